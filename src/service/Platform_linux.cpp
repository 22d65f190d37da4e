#ifndef __APPLE__

#include <dirent.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "service/Platform.h"

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

}  // namespace

std::string ApplicationSupportFolder() {
  const char* dataHome = getenv("XDG_DATA_HOME");
  if (dataHome && dataHome[0] == '/') return WithoutTrailingSlashes(dataHome);
  const std::string home = HomeFolder();
  if (home.empty()) return "";
  return WithoutTrailingSlashes(home) + "/.local/share";
}

std::vector<std::string> ListFolder(const std::string& folder) {
  std::vector<std::string> names;
  std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(folder.c_str()), closedir);
  if (!dir) return names;
  while (const dirent* entry = readdir(dir.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  return names;
}

bool IsFolder(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

#endif
