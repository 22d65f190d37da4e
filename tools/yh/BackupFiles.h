#ifndef YH_TOOL_BACKUPFILES_H
#define YH_TOOL_BACKUPFILES_H

#include <cstdint>
#include <string>
#include <vector>

#include "Fd.h"

namespace yh {

// Opens the files that answers name, read-only, and only regular files that
// lie inside the backup folder (or the folder of an encrypted backup's
// decrypted copies) once every symbolic link is resolved.
class BackupFiles {
 public:
  struct Source {
    Fd fd;  // open when `problem` is empty
    uint64_t size = 0;
    std::string problem;  // why the file is not copied
  };

  // `copies` is "" when there are no decrypted copies.
  BackupFiles(const std::string& backupPath, const std::string& copies);

  Source Open(const std::string& path) const;

 private:
  std::vector<std::string> folders_;  // resolved, each ending in "/"
};

}  // namespace yh

#endif
