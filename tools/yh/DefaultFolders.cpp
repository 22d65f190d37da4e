#include "DefaultFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace yh {

std::vector<std::string> DefaultFolders() {
  const char* home = std::getenv("HOME");
  const passwd* user = home && *home ? nullptr : ::getpwuid(::getuid());
  const std::string homeFolder = home && *home ? home : user && user->pw_dir ? user->pw_dir : "";
#ifdef __APPLE__
  return {homeFolder + "/Library/Application Support/MobileSync/Backup"};
#else
  const char* data = std::getenv("XDG_DATA_HOME");
  std::string folder = data && data[0] == '/' ? data : homeFolder + "/.local/share";
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return {folder + "/MobileSync/Backup"};
#endif
}

}  // namespace yh
