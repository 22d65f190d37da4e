#include "platform/BackupFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/BackupFoldersOverride.h"

namespace platform {

namespace {

std::string HomeFolder() {
  const char* home = getenv("HOME");
  if (home && *home) return home;
  const passwd* entry = getpwuid(getuid());
  return entry && entry->pw_dir ? entry->pw_dir : "";
}

std::string WithoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string DataFolder() {
  const char* dataHome = getenv("XDG_DATA_HOME");
  if (dataHome && dataHome[0] == '/') return WithoutTrailingSlashes(dataHome);
  const std::string home = HomeFolder();
  if (home.empty()) return "";
  return WithoutTrailingSlashes(home) + "/.local/share";
}

}  // namespace

std::vector<std::string> DefaultBackupFolders() {
  std::vector<std::string> folders;
  if (BackupFoldersOverridden(&folders)) return folders;
  const std::string data = DataFolder();
  if (!data.empty()) folders.push_back(data + "/MobileSync/Backup");
  return folders;
}

}  // namespace platform
