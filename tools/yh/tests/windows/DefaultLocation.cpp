#include "DefaultLocation.h"

#include <filesystem>

#include "YhRun.h"
#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace yhtool {

DefaultLocation DefaultLocationIn(const std::string& folder) {
  return {{"APPDATA=" + folder + "Roaming", "USERPROFILE=" + folder + "Profile"},
          {folder + "Roaming/Apple Computer/MobileSync/Backup", folder + "Profile/Apple/MobileSync/Backup"}};
}

// No folder of the build is named as Windows names the default location: the
// samples are copied once into one that is.
std::vector<std::string> SamplesByDefault() {
  static const yhtest::TempDir home;
  static const DefaultLocation location = [] {
    const DefaultLocation made = DefaultLocationIn(home.Path());
    std::filesystem::create_directories(std::filesystem::path(made.folders.front()).parent_path());
    yhtest::CopyTree(Samples(), made.folders.front());
    return made;
  }();
  return location.env;
}

}  // namespace yhtool
