#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace {

TEST(OpenForReadingNoFollow, OpensAFile) {
  yhtest::TempDir dir;
  yhtest::WriteFile(dir.Path() + "file", "bytes");
  const int fd = platform::OpenForReadingNoFollow(dir.Path() + "file");
  ASSERT_GE(fd, 0);
  char bytes[5] = {};
  EXPECT_EQ(platform::ReadSome(fd, bytes, sizeof bytes), 5);
  EXPECT_EQ(std::string(bytes, 5), "bytes");
  platform::CloseFile(fd);
}

TEST(OpenForReadingNoFollow, RefusesALink) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  yhtest::TempDir dir;
  yhtest::WriteFile(dir.Path() + "file", "bytes");
  ASSERT_TRUE(yhtest::MakeSymlink(dir.Path() + "file", dir.Path() + "link"));
  EXPECT_EQ(platform::OpenForReadingNoFollow(dir.Path() + "link"), -1);
  EXPECT_EQ(errno, ELOOP);
}

}  // namespace
