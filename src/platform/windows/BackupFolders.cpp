#include "platform/BackupFolders.h"

#include <stdlib.h>

#include "platform/BackupFoldersOverride.h"
#include "platform/FileSystem.h"
#include "platform/windows/Wide.h"

namespace platform {

namespace {

// With "/" between names, as the library joins every path.
std::string Variable(const wchar_t* name) {
  const wchar_t* value = _wgetenv(name);
  std::string text = value && *value ? PortablePath(Narrow(value)) : std::string();
  while (text.size() > 3 && text.back() == '/') text.pop_back();
  return text;
}

}  // namespace

std::vector<std::string> DefaultBackupFolders() {
  std::vector<std::string> folders;
  if (BackupFoldersOverridden(&folders)) return folders;
  const std::string roaming = Variable(L"APPDATA");
  if (!roaming.empty()) folders.push_back(roaming + "/Apple Computer/MobileSync/Backup");
  const std::string profile = Variable(L"USERPROFILE");
  if (!profile.empty()) folders.push_back(profile + "/Apple/MobileSync/Backup");
  return folders;
}

}  // namespace platform
