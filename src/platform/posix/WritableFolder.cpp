#include "platform/WritableFolder.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/posix/PathInfoOf.h"

namespace platform {

namespace {

int Descriptor(intptr_t held) { return static_cast<int>(held); }

}  // namespace

void WritableFolder::Close() {
  if (held_ >= 0) close(Descriptor(held_));
  held_ = -1;
}

bool WritableFolder::Open(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) {
    errno = error.value();
    return false;
  }
  const int fd = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return false;
  Close();
  path_ = path;
  held_ = fd;
  return true;
}

bool WritableFolder::OpenSub(const std::string& name, WritableFolder* sub) const {
  if (mkdirat(Descriptor(held_), name.c_str(), 0755) != 0 && errno != EEXIST) return false;
  // O_NOFOLLOW: a symbolic link planted under this name is refused.
  const int fd = openat(Descriptor(held_), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (fd < 0) return false;
  sub->Close();
  sub->path_ = path_ + "/" + name;
  sub->held_ = fd;
  return true;
}

int WritableFolder::CreateNew(const std::string& name) const {
  return openat(Descriptor(held_), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
}

// File systems without an atomic no-replace rename get a link and an unlink.
bool WritableFolder::RenameNew(const std::string& from, const std::string& to) const {
  const int folder = Descriptor(held_);
  if (renameat2(folder, from.c_str(), folder, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  if (linkat(folder, from.c_str(), folder, to.c_str(), 0) != 0) return false;
  unlinkat(folder, from.c_str(), 0);
  return true;
}

bool WritableFolder::StatNoFollow(const std::string& name, PathInfo* info) const {
  struct stat found {};
  if (fstatat(Descriptor(held_), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) return false;
  *info = PathInfoOf(found);
  return true;
}

bool WritableFolder::Remove(const std::string& name) const { return unlinkat(Descriptor(held_), name.c_str(), 0) == 0; }

}  // namespace platform
