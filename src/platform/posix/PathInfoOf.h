#ifndef YH_PLATFORM_POSIX_PATHINFOOF_H
#define YH_PLATFORM_POSIX_PATHINFOOF_H

#include <sys/stat.h>

#include "platform/FileSystem.h"

namespace platform {

// What stat() found, as the platform layer tells it.
PathInfo PathInfoOf(const struct stat& found);

}  // namespace platform

#endif
