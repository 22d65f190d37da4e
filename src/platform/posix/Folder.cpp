#include "platform/Folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// O_PATH holds a folder that may be searched but not listed; where it is
// missing, a folder that cannot be opened is tested by full paths instead.
#ifdef O_PATH
constexpr int kHoldFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int kHoldFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

}  // namespace

Folder::Folder(const std::string& path)
    : path_(path), handle_(!path.empty() && path.back() == '/' ? open(path.c_str(), kHoldFlags) : -1) {}

Folder::~Folder() {
  if (handle_ >= 0) close(handle_);
}

bool Folder::Has(const std::string& name, Entry* entry) const {
  return Stat(name.c_str(), !name.empty() && name.front() != '/', entry);
}

bool Folder::Has(const char* name, Entry* entry) const { return Stat(name, name[0] != '\0' && name[0] != '/', entry); }

bool Folder::Stat(const char* name, bool below, Entry* entry) const {
  struct stat info;
  const bool found = handle_ < 0 || !below ? stat((path_ + name).c_str(), &info) == 0
                                           : fstatat(handle_, name, &info, 0) == 0;
  if (found && entry) *entry = {static_cast<uint64_t>(info.st_size), S_ISREG(info.st_mode)};
  return found;
}
