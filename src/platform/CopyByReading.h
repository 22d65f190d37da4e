#ifndef YH_PLATFORM_COPYBYREADING_H
#define YH_PLATFORM_COPYBYREADING_H

#include <cstdint>

namespace platform {

// CopyBytes through a buffer of ours, where the system has no call that
// copies between two files.
bool CopyByReading(int in, int out, uint64_t size);

}  // namespace platform

#endif
