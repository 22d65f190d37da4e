#include "PrivateFolder.h"

#include <stdlib.h>

#include <filesystem>

namespace yh {

PrivateFolder::PrivateFolder() {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = std::string(tmp && tmp[0] == '/' ? tmp : "/tmp") + "/yh-XXXXXX";
  if (mkdtemp(pattern.data())) path_ = pattern;
}

PrivateFolder::~PrivateFolder() {
  if (path_.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace yh
