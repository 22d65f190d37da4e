#include "support/HeapInUse.h"

#include <malloc.h>

namespace yhtest {

// mallinfo2 walks the allocator's free lists: call it seldom.
size_t HeapInUse() { return mallinfo2().uordblks; }

}  // namespace yhtest
