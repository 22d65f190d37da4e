#ifndef YH_TESTS_SUPPORT_HEAPINUSE_H
#define YH_TESTS_SUPPORT_HEAPINUSE_H

#include <cstddef>

namespace yhtest {

// The bytes the C allocator has handed out and not had back; 0 where the
// allocator does not say (Windows' C runtime), so that tests of memory
// growth skip there.
size_t HeapInUse();

}  // namespace yhtest

#endif
