#ifndef YH_TOOL_BACKUPFINDER_H
#define YH_TOOL_BACKUPFINDER_H

#include <memory>
#include <string>

#include "Library.h"
#include "PrivateFolder.h"

namespace yh {

// The backup a command works on, its index read. `device` is in `list`.
struct FoundBackup {
  // Holds the library's private folder of the record (an encrypted backup's
  // decrypted files, the pictures the library writes out); declared first so
  // that it goes after the list, whose records remove their own copies.
  std::unique_ptr<PrivateFolder> copies;
  DeviceList list;
  BackupDevice* device;

  // Where answers may name files besides the backup: "" when no folder could
  // be made.
  std::string CopiesFolder() const { return copies ? copies->Path() : std::string(); }
};

// The backups in `root` (the default location when empty). Throws Failure
// when the folder is missing or holds no backup.
DeviceList ListBackups(const Library& library, const std::string& root);

// Finds the backup that `name` names and reads its index. `name` is a path
// when it holds a "/" or names an existing folder; otherwise, under `root`
// (the default location when empty), a backup folder's name, a device name,
// or a prefix of exactly one folder name. An encrypted backup is unlocked
// first with its password (see BackupPassword). Throws Failure saying which
// backup and why when there is none, its password is wrong or its index
// cannot be read.
FoundBackup FindBackup(const Library& library, const std::string& name, const std::string& root,
                       const std::string& passwordFile);

// The same backup, its index not read.
FoundBackup LocateBackup(const Library& library, const std::string& name, const std::string& root);

}  // namespace yh

#endif
