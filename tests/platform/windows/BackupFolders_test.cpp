#include "platform/BackupFolders.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ScopedEnv.h"

namespace {

TEST(BackupFolders, ClassicInstallThenMicrosoftStoreInstall) {
  yhtest::ScopedEnv roaming("APPDATA", "C:\\Users\\Ada\\AppData\\Roaming\\");
  yhtest::ScopedEnv profile("USERPROFILE", "C:\\Users\\Ada");
  EXPECT_EQ(platform::DefaultBackupFolders(),
            (std::vector<std::string>{"C:/Users/Ada/AppData/Roaming/Apple Computer/MobileSync/Backup",
                                      "C:/Users/Ada/Apple/MobileSync/Backup"}));
}

TEST(BackupFolders, TestsNameTheirOwn) {
  platform::UseBackupFoldersForTesting({"C:/a", "D:/b"});
  EXPECT_EQ(platform::DefaultBackupFolders(), (std::vector<std::string>{"C:/a", "D:/b"}));
  platform::UseBackupFoldersForTesting({});
}

}  // namespace
