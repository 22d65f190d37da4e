#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

namespace fs = std::filesystem;

// Tests make folders read-only; give write access back so the tree can go.
void MakeWritable(const fs::path& folder) {
  std::error_code error;
  fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, error);
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    if (entry.symlink_status(error).type() == fs::file_type::directory) MakeWritable(entry.path());
  }
}

}  // namespace

TempDir::TempDir() {
  const char* base = std::getenv("TMPDIR");
  std::string pattern = base != nullptr && *base != '\0' ? base : "/tmp";
  if (pattern.back() != '/') pattern += '/';
  pattern += "yh-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  if (mkdtemp(name.data()) == nullptr) {
    ADD_FAILURE() << "mkdtemp failed for " << pattern;
    return;
  }
  path_ = std::string(name.data()) + "/";
}

TempDir::~TempDir() {
  if (path_.empty()) return;
  MakeWritable(path_);
  std::error_code error;
  fs::remove_all(path_, error);
}

}  // namespace yhtest
