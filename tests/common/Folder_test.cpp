#include "platform/Folder.h"

#include <gtest/gtest.h>
#include <filesystem>

#include <string>
#include <vector>

#include "common/FileHelpers.h"
#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace {

using yhtest::TempDir;
using yhtest::WriteFile;

// Every answer of Has must be the one VQIsFileExists gives for the joined path.
void ExpectSameAsJoinedPath(const Folder& folder, const std::string& path, const std::string& name) {
  EXPECT_EQ(folder.Has(name), VQIsFileExists((path + name).c_str()) != 0) << path << " + " << name;
}

class FolderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = dir_.Path();
    std::filesystem::create_directories(root_ + "backup/3d");
    WriteFile(root_ + "backup/3d/3d0d7e", "stored");
    WriteFile(root_ + "backup/flat", "stored");
    WriteFile(root_ + "backupflat", "beside the folder");
    yhtest::MakeSymlink(root_ + "backup/flat", root_ + "backup/link");
    yhtest::MakeSymlink(root_ + "backup/nowhere", root_ + "backup/dangling");
  }

  TempDir dir_;
  std::string root_;
};

TEST_F(FolderTest, FindsFilesFoldersAndLinksBelowTheFolder) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  const Folder folder(root_ + "backup/");
  EXPECT_TRUE(folder.Has("flat"));
  EXPECT_TRUE(folder.Has("3d/3d0d7e"));
  EXPECT_TRUE(folder.Has("3d"));
  EXPECT_TRUE(folder.Has("link"));
  EXPECT_FALSE(folder.Has("dangling"));
  EXPECT_FALSE(folder.Has("missing"));
  EXPECT_FALSE(folder.Has("3d/missing"));
}

TEST_F(FolderTest, GivesTheSizeAndWhetherAPlainFileWasFound) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  for (const std::string& path : {root_ + "backup/", root_ + "backup"}) {
    const Folder folder(path);
    const std::string prefix = path.back() == '/' ? "" : "/";
    Folder::Entry entry{99, false};
    ASSERT_TRUE(folder.Has(prefix + "3d/3d0d7e", &entry));
    EXPECT_EQ(entry.size, 6u);
    EXPECT_TRUE(entry.regular);
    ASSERT_TRUE(folder.Has(prefix + "link", &entry));
    EXPECT_EQ(entry.size, 6u);
    EXPECT_TRUE(entry.regular);
    ASSERT_TRUE(folder.Has(prefix + "3d", &entry));
    EXPECT_FALSE(entry.regular);
    entry = {99, true};
    EXPECT_FALSE(folder.Has(prefix + "missing", &entry));
    EXPECT_EQ(entry.size, 99u);
  }
}

TEST_F(FolderTest, AnswersAsTheJoinedPathWouldForEveryShapeOfName) {
  for (const std::string& path : {root_ + "backup/", root_ + "backup", root_ + "missing/", std::string()}) {
    const Folder folder(path);
    const std::vector<std::string> names = {"flat",    "3d/3d0d7e", "",         "/",       "../backupflat",
                                            "..",      "missing",   "link",     "dangling", root_ + "backup/flat"};
    for (const std::string& name : names) {
      ExpectSameAsJoinedPath(folder, path, name);
    }
  }
}

TEST_F(FolderTest, APathWithoutItsFinalSlashIsJoinedAsItStands) {
  const Folder folder(root_ + "backup");
  EXPECT_TRUE(folder.Has("flat"));  // "backupflat", beside the folder
  EXPECT_FALSE(folder.Has("3d/3d0d7e"));
}

TEST_F(FolderTest, AFolderThatMayBeSearchedButNotListedIsStillTested) {
  if (!yhtest::HasModes()) GTEST_SKIP() << yhtest::WhyNoModes();
  yhtest::SetMode(root_ + "backup", 0111);
  const Folder folder(root_ + "backup/");
  EXPECT_EQ(folder.Has("flat"), VQIsFileExists((root_ + "backup/flat").c_str()) != 0);
  EXPECT_FALSE(folder.Has("missing"));
  yhtest::SetMode(root_ + "backup", 0755);
}

}  // namespace
