#include "DefaultLocation.h"

#include "YhRun.h"

namespace yhtool {

DefaultLocation DefaultLocationIn(const std::string& folder) {
  return {{"XDG_DATA_HOME=" + folder}, {folder + "MobileSync/Backup"}};
}

// The samples lie in <build>/samples/MobileSync/Backup already.
std::vector<std::string> SamplesByDefault() {
  return {"XDG_DATA_HOME=" + Samples().substr(0, Samples().size() - std::string("/MobileSync/Backup").size())};
}

}  // namespace yhtool
