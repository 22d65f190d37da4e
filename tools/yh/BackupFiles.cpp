#include "BackupFiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/FileSystem.h"

namespace yh {
BackupFiles::BackupFiles(const std::string& backupPath, const std::string& copies) {
  for (const std::string& folder : {backupPath, copies}) {
    std::string resolved = folder.empty() ? "" : platform::ResolvedPath(folder);
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
  const std::string resolved = platform::ResolvedPath(path);
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
  // The path is resolved, so no link is left to follow; a FIFO opens without
  // waiting for a writer and is then refused.
  Fd fd(platform::OpenForReading(resolved));
  platform::PathInfo status;
  if (!fd || !platform::StatOpen(fd.Get(), &status)) {
    source.problem = std::string("cannot be read (") + std::strerror(errno) + ")";
    return source;
  }
  if (!status.regular) {
    source.problem = "not a regular file";
    return source;
  }
  source.fd = std::move(fd);
  source.size = status.size;
  return source;
}

}  // namespace yh
