#include <gtest/gtest.h>

#include <filesystem>

#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

namespace fs = std::filesystem;

// Tests make folders read-only; give write access back so the tree can go.
void MakeWritable(const fs::path& folder) {
  std::error_code error;
  fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, error);
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    const fs::file_type type = entry.symlink_status(error).type();
    if (type == fs::file_type::directory) MakeWritable(entry.path());
    // Windows removes no read-only file.
    if (type == fs::file_type::regular) fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add, error);
  }
}

}  // namespace

TempDir::TempDir() : path_(platform::MakeUniqueFolder(platform::TemporaryFolder(), "yh-")) {
  if (path_.empty()) ADD_FAILURE() << "no temporary folder could be made in " << platform::TemporaryFolder();
}

TempDir::~TempDir() {
  if (path_.empty()) return;
  MakeWritable(path_);
  std::error_code error;
  fs::remove_all(path_, error);
}

}  // namespace yhtest
