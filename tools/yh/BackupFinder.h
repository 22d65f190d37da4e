#ifndef YH_TOOL_BACKUPFINDER_H
#define YH_TOOL_BACKUPFINDER_H

#include <string>

#include "Library.h"

namespace yh {

// The backup a command works on, its index read. `device` is in `list`.
struct FoundBackup {
  DeviceList list;
  BackupDevice* device;
};

// The backups in `root` (the default location when empty). Throws Failure
// when the folder is missing or holds no backup.
DeviceList ListBackups(const Library& library, const std::string& root);

// Finds the backup that `name` names and reads its index. `name` is a path
// when it holds a "/" or names an existing folder; otherwise, under `root`
// (the default location when empty), a backup folder's name, a device name,
// or a prefix of exactly one folder name. Throws Failure saying which backup
// and why when there is none or its index cannot be read.
FoundBackup FindBackup(const Library& library, const std::string& name, const std::string& root);

// The same backup, its index not read.
FoundBackup LocateBackup(const Library& library, const std::string& name, const std::string& root);

}  // namespace yh

#endif
