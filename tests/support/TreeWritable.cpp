#include <filesystem>

#include "platform/FileSystem.h"
#include "support/SystemFiles.h"

namespace yhtest {

void SetTreeWritable(const std::string& root, bool writable) {
  namespace fs = std::filesystem;
  const auto set = [writable](const std::string& path) {
    platform::PathInfo info;
    if (!platform::StatNoFollow(path, &info) || info.link) return;
    SetMode(path, writable ? (info.permissions | 0200) : (info.permissions & ~0222u));
  };
  std::error_code error;
  for (fs::recursive_directory_iterator it(root, error), end; !error && it != end; it.increment(error)) {
    set(it->path().string());
  }
  set(root);
}

}  // namespace yhtest
