#include "BackupFolder.h"

#include <filesystem>

namespace bench {

std::string BackupIn(const std::string& folder) {
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (std::filesystem::exists(entry.path() / "Manifest.mbdb") ||
        std::filesystem::exists(entry.path() / "Manifest.db")) {
      return entry.path().string() + "/";
    }
  }
  return std::string();
}

}  // namespace bench
