#ifndef YH_TOOL_BACKUPFILES_H
#define YH_TOOL_BACKUPFILES_H

#include <cstdint>
#include <string>

#include "Fd.h"

namespace yh {

// Opens the files that answers name, read-only, and only regular files that
// lie inside the backup folder once every symbolic link is resolved.
class BackupFiles {
 public:
  struct Source {
    Fd fd;  // open when `problem` is empty
    uint64_t size = 0;
    std::string problem;  // why the file is not copied
  };

  explicit BackupFiles(const std::string& backupPath);

  Source Open(const std::string& path) const;

 private:
  std::string folder_;  // resolved, ending in "/"
};

}  // namespace yh

#endif
