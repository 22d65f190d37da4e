#include <filesystem>

#include "support/SystemFiles.h"

namespace yhtest {

// MinGW's std::filesystem finds nothing to copy at a source that ends in "/".
void CopyTree(const std::string& from, const std::string& to) {
  namespace fs = std::filesystem;
  std::string source = from;
  while (source.size() > 1 && source.back() == '/') source.pop_back();
  fs::copy(source, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
}

}  // namespace yhtest
