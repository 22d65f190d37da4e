#include "platform/WritableFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace {

class WritableFolder : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(folder_.Open(dir_.Path() + "out")); }

  std::string In(const std::string& name) const { return dir_.Path() + "out/" + name; }

  // Writes `bytes` into a new file `name` of the folder.
  void WriteNew(const std::string& name, const std::string& bytes) {
    const int fd = folder_.CreateNew(name);
    ASSERT_GE(fd, 0) << name;
    EXPECT_TRUE(platform::WriteAll(fd, bytes.data(), bytes.size()));
    platform::CloseFile(fd);
  }

  yhtest::TempDir dir_;
  platform::WritableFolder folder_;
};

TEST_F(WritableFolder, OpenMakesTheFolderAndThoseAboveIt) {
  platform::WritableFolder deep;
  ASSERT_TRUE(deep.Open(dir_.Path() + "a/b/c"));
  EXPECT_TRUE(platform::IsFolder(dir_.Path() + "a/b/c"));
  EXPECT_EQ(deep.Path(), dir_.Path() + "a/b/c");
  EXPECT_EQ(folder_.Path(), dir_.Path() + "out");
}

TEST_F(WritableFolder, OpenFailsOnAFile) {
  yhtest::WriteFile(dir_.Path() + "file", "x");
  platform::WritableFolder file;
  EXPECT_FALSE(file.Open(dir_.Path() + "file"));
}

TEST_F(WritableFolder, CreateNewWritesANewFileAndNeverAnExistingOne) {
  WriteNew("one", "first");
  EXPECT_EQ(yhtest::ReadBytes(In("one")), "first");
  EXPECT_EQ(folder_.CreateNew("one"), -1);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(yhtest::ReadBytes(In("one")), "first");
}

TEST_F(WritableFolder, RenameNewRefusesATakenName) {
  WriteNew("from", "moved");
  WriteNew("taken", "kept");
  EXPECT_FALSE(folder_.RenameNew("from", "taken"));
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(yhtest::ReadBytes(In("taken")), "kept");
  ASSERT_TRUE(folder_.RenameNew("from", "free"));
  EXPECT_EQ(yhtest::ReadBytes(In("free")), "moved");
  EXPECT_FALSE(platform::Stat(In("from")));
}

TEST_F(WritableFolder, StatNoFollowTellsWhatIsThere) {
  WriteNew("file", "12345");
  platform::PathInfo info;
  ASSERT_TRUE(folder_.StatNoFollow("file", &info));
  EXPECT_TRUE(info.regular);
  EXPECT_FALSE(info.link);
  EXPECT_EQ(info.size, 5u);
  EXPECT_FALSE(folder_.StatNoFollow("nothing", &info));
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(WritableFolder, RemoveTakesAFileAway) {
  WriteNew("file", "x");
  EXPECT_TRUE(folder_.Remove("file"));
  EXPECT_FALSE(platform::Stat(In("file")));
  EXPECT_FALSE(folder_.Remove("file"));
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(WritableFolder, OpenSubMakesOrOpensAFolderBelow) {
  platform::WritableFolder sub;
  ASSERT_TRUE(folder_.OpenSub("media", &sub));
  EXPECT_EQ(sub.Path(), In("media"));
  const int fd = sub.CreateNew("copy");
  ASSERT_GE(fd, 0);
  platform::CloseFile(fd);
  EXPECT_TRUE(platform::Stat(In("media/copy")));
  platform::WritableFolder again;
  EXPECT_TRUE(folder_.OpenSub("media", &again));
}

TEST_F(WritableFolder, OpenSubRefusesAFile) {
  WriteNew("file", "x");
  platform::WritableFolder sub;
  EXPECT_FALSE(folder_.OpenSub("file", &sub));
}

TEST_F(WritableFolder, NothingIsReachedThroughALink) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  yhtest::WriteFile(dir_.Path() + "elsewhere/secret", "secret");
  ASSERT_TRUE(yhtest::MakeSymlink(dir_.Path() + "elsewhere", In("folder-link")));
  ASSERT_TRUE(yhtest::MakeSymlink(dir_.Path() + "elsewhere/secret", In("file-link")));
  platform::WritableFolder sub;
  EXPECT_FALSE(folder_.OpenSub("folder-link", &sub));
  EXPECT_EQ(folder_.CreateNew("file-link"), -1);
  platform::PathInfo info;
  ASSERT_TRUE(folder_.StatNoFollow("file-link", &info));
  EXPECT_TRUE(info.link);
  EXPECT_TRUE(folder_.Remove("file-link"));
  EXPECT_EQ(yhtest::ReadBytes(dir_.Path() + "elsewhere/secret"), "secret");
}

}  // namespace
