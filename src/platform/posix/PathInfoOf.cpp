#include "platform/posix/PathInfoOf.h"

namespace platform {

PathInfo PathInfoOf(const struct stat& found) {
  PathInfo info;
  info.size = static_cast<uint64_t>(found.st_size);
  info.folder = S_ISDIR(found.st_mode);
  info.regular = S_ISREG(found.st_mode);
  info.link = S_ISLNK(found.st_mode);
#ifdef __APPLE__
  const struct timespec& modified = found.st_mtimespec;
#else
  const struct timespec& modified = found.st_mtim;
#endif
  info.modified = static_cast<int64_t>(modified.tv_sec) * 1000000000 + modified.tv_nsec;
  info.permissions = static_cast<uint32_t>(found.st_mode & 07777);
  return info;
}

}  // namespace platform
