#include "BackupFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace yh {
namespace {

struct FreeText {
  void operator()(char* text) const { std::free(text); }
};

// The path with every link and "." or ".." resolved; "" when it is missing.
std::string Resolved(const std::string& path) {
  std::unique_ptr<char, FreeText> resolved(::realpath(path.c_str(), nullptr));
  return resolved ? resolved.get() : "";
}

}  // namespace

BackupFiles::BackupFiles(const std::string& backupPath, const std::string& copies) {
  for (const std::string& folder : {backupPath, copies}) {
    std::string resolved = folder.empty() ? "" : Resolved(folder);
    if (resolved.empty()) continue;
    if (resolved.back() != '/') resolved += "/";
    folders_.push_back(resolved);
  }
}

BackupFiles::Source BackupFiles::Open(const std::string& path) const {
  Source source;
  if (path.empty()) {
    source.problem = "the answer names no file";
    return source;
  }
  const std::string resolved = Resolved(path);
  if (resolved.empty()) {
    source.problem = std::string("not in the backup (") + std::strerror(errno) + ")";
    return source;
  }
  const bool inside = std::any_of(folders_.begin(), folders_.end(), [&](const std::string& folder) {
    return resolved.compare(0, folder.size(), folder) == 0;
  });
  if (!inside) {
    source.problem = "lies outside the backup";
    return source;
  }
  // O_NONBLOCK: opening a FIFO must not wait for a writer.
  Fd fd(::open(resolved.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!fd || ::fstat(fd.Get(), &status) != 0) {
    source.problem = std::string("cannot be read (") + std::strerror(errno) + ")";
    return source;
  }
  if (!S_ISREG(status.st_mode)) {
    source.problem = "not a regular file";
    return source;
  }
  source.fd = std::move(fd);
  source.size = static_cast<uint64_t>(status.st_size);
  return source;
}

}  // namespace yh
