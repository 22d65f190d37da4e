#include <gtest/gtest.h>

#include <string>

#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"

namespace {

class ReadAt : public ::testing::Test {
 protected:
  void SetUp() override {
    yhtest::WriteFile(path_, "0123456789abcdef");
    fd_ = platform::OpenForReading(path_);
    ASSERT_GE(fd_, 0);
  }
  void TearDown() override { platform::CloseFile(fd_); }

  yhtest::TempDir folder_;
  const std::string path_ = folder_.Path() + "bytes";
  int fd_ = -1;
};

TEST_F(ReadAt, ReadsAtAnyOffsetWhateverWasReadBefore) {
  char bytes[4] = {};
  ASSERT_EQ(platform::ReadAt(fd_, bytes, 4, 10), 4);
  EXPECT_EQ(std::string(bytes, 4), "abcd");
  ASSERT_EQ(platform::ReadAt(fd_, bytes, 4, 2), 4);
  EXPECT_EQ(std::string(bytes, 4), "2345");
}

TEST_F(ReadAt, GivesFewerBytesAtTheEndAndNoneBeyondIt) {
  char bytes[8] = {};
  ASSERT_EQ(platform::ReadAt(fd_, bytes, 8, 13), 3);
  EXPECT_EQ(std::string(bytes, 3), "def");
  EXPECT_EQ(platform::ReadAt(fd_, bytes, 8, 16), 0);
  EXPECT_EQ(platform::ReadAt(fd_, bytes, 8, uint64_t{1} << 40), 0);
}

}  // namespace
