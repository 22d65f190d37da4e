#ifndef YH_PLATFORM_BACKUPFOLDERSOVERRIDE_H
#define YH_PLATFORM_BACKUPFOLDERSOVERRIDE_H

#include <string>
#include <vector>

namespace platform {

// The folders a test named, if it named any: every implementation of
// DefaultBackupFolders asks here first.
bool BackupFoldersOverridden(std::vector<std::string>* folders);

}  // namespace platform

#endif
