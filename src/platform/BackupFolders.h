#ifndef YH_PLATFORM_BACKUPFOLDERS_H
#define YH_PLATFORM_BACKUPFOLDERS_H

#include <string>
#include <vector>

namespace platform {

// The folders where the sync software keeps this user's backups, whether or
// not they exist, without a trailing separator. Linux: $XDG_DATA_HOME when
// that is an absolute path, else $HOME/.local/share, then
// "/MobileSync/Backup". macOS: the Application Support folder, then the same.
// Windows: %APPDATA%/Apple Computer/MobileSync/Backup (the classic install),
// then %USERPROFILE%/Apple/MobileSync/Backup (the Microsoft Store install),
// with "/" between names as everywhere in the library.
std::vector<std::string> DefaultBackupFolders();

// Tests: the folders DefaultBackupFolders gives from now on; none goes back
// to the user's own.
void UseBackupFoldersForTesting(const std::vector<std::string>& folders);

}  // namespace platform

#endif
