#include "platform/BackupFolders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/ScopedEnv.h"

namespace {

TEST(BackupFolders, FollowXdgDataHomeWhenAbsoluteElseHome) {
  {
    yhtest::ScopedEnv data("XDG_DATA_HOME", "/data/home/");
    EXPECT_EQ(platform::DefaultBackupFolders(), std::vector<std::string>{"/data/home/MobileSync/Backup"});
  }
  {
    yhtest::ScopedEnv data("XDG_DATA_HOME", "relative/path");
    yhtest::ScopedEnv home("HOME", "/home/someone");
    EXPECT_EQ(platform::DefaultBackupFolders(), std::vector<std::string>{"/home/someone/.local/share/MobileSync/Backup"});
  }
}

TEST(BackupFolders, TestsNameTheirOwn) {
  platform::UseBackupFoldersForTesting({"/a", "/b"});
  EXPECT_EQ(platform::DefaultBackupFolders(), (std::vector<std::string>{"/a", "/b"}));
  platform::UseBackupFoldersForTesting({});
  yhtest::ScopedEnv data("XDG_DATA_HOME", "/data/home");
  EXPECT_EQ(platform::DefaultBackupFolders(), std::vector<std::string>{"/data/home/MobileSync/Backup"});
}

}  // namespace
