#include <gtest/gtest.h>

#include <string>

#include "platform/FileSystem.h"
#include "platform/Zone.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"

namespace {

TEST(LocalInstant, ReadsTheFieldsUnderTheZoneRulesOfTheirDay) {
  const yhtest::ScopedTimeZone zone("Europe/Berlin");
  EXPECT_EQ(platform::LocalInstant(2019, 7, 1, 12, 0, 0), 1561975200);  // 10:00 UTC, summer time
  EXPECT_EQ(platform::LocalInstant(2020, 1, 6, 11, 40, 0), 1578307200);  // 10:40 UTC, standard time
}

TEST(LocalInstant, IsTheUtcInstantInUtc) {
  const yhtest::ScopedTimeZone zone("UTC");
  EXPECT_EQ(platform::LocalInstant(1970, 1, 1, 0, 0, 0), 0);
  EXPECT_EQ(platform::LocalInstant(2023, 9, 12, 8, 41, 17), 1694508077);
}

TEST(SetFileTimes, GivesAnOpenFileItsModificationTime) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "dated";
  const int fd = platform::CreatePrivateFile(path);
  ASSERT_GE(fd, 0);
  EXPECT_TRUE(platform::WriteAll(fd, "x", 1));
  EXPECT_TRUE(platform::SetFileTimes(fd, 1561975200));
  platform::CloseFile(fd);
  platform::PathInfo info;
  ASSERT_TRUE(platform::Stat(path, &info));
  EXPECT_EQ(info.modified, int64_t{1561975200} * 1000000000);
}

// The runs hold every byte written; where holes are known they are left out.
TEST(NextData, RunsHoldEveryByteWritten) {
  constexpr uint64_t kSize = 8 << 20;
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "sparse";
  {
    const int fd = platform::CreatePrivateFile(path);
    ASSERT_GE(fd, 0);
    ASSERT_TRUE(platform::SetFileSize(fd, kSize));
    ASSERT_TRUE(platform::Seek(fd, kSize / 2));
    ASSERT_TRUE(platform::WriteAll(fd, "middle", 6));
    platform::CloseFile(fd);
  }
  const int fd = platform::OpenForReading(path);
  ASSERT_GE(fd, 0);
  uint64_t covered = 0;
  uint64_t last = 0;
  for (auto run = platform::NextData(fd, 0, kSize); run; run = platform::NextData(fd, run->end, kSize)) {
    EXPECT_LE(last, run->start);
    EXPECT_LT(run->start, run->end);
    EXPECT_LE(run->end, kSize);
    if (run->start <= kSize / 2 && kSize / 2 + 6 <= run->end) ++covered;
    last = run->end;
  }
  platform::CloseFile(fd);
  EXPECT_EQ(covered, 1u);
  EXPECT_EQ(yhtest::ReadBytes(path).substr(kSize / 2, 6), "middle");
  EXPECT_EQ(yhtest::ReadBytes(path).size(), kSize);
}

TEST(NextData, NothingIsLeftAtTheEnd) {
  yhtest::TempDir dir;
  yhtest::WriteFile(dir.Path() + "file", "bytes");
  const int fd = platform::OpenForReading(dir.Path() + "file");
  ASSERT_GE(fd, 0);
  EXPECT_FALSE(platform::NextData(fd, 5, 5));
  const auto run = platform::NextData(fd, 0, 5);
  ASSERT_TRUE(run);
  EXPECT_EQ(run->start, 0u);
  EXPECT_EQ(run->end, 5u);
  platform::CloseFile(fd);
}

}  // namespace
