#include "FileIo.h"

#include <gtest/gtest.h>

#include <string>

#include "Fd.h"
#include "YhRun.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace yhtool {
namespace {

constexpr uint64_t kSize = 8 << 20;

yh::Fd OpenNew(const std::string& path) { return yh::Fd(platform::CreatePrivateFile(path)); }

TEST(CopyFile, CopiesEveryByteAndLeavesHolesUnwritten) {
  yhtest::TempDir dir;
  const std::string from = dir.Path() + "sparse";
  {
    const yh::Fd file = OpenNew(from);
    ASSERT_TRUE(platform::SetFileSize(file.Get(), kSize));
    ASSERT_TRUE(platform::WriteAll(file.Get(), "head", 4));
    ASSERT_TRUE(platform::Seek(file.Get(), kSize / 2));
    ASSERT_TRUE(platform::WriteAll(file.Get(), "middle", 6));
  }
  const yh::Fd source(platform::OpenForReading(from));
  const std::string to = dir.Path() + "copy";
  {
    const yh::Fd copy = OpenNew(to);
    EXPECT_EQ(yh::CopyFile(source.Get(), copy.Get(), to), kSize);
  }
  EXPECT_EQ(ReadFile(to), ReadFile(from));
  if (!yhtest::KeepsHoles()) GTEST_SKIP() << yhtest::WhyNoHoles();
  EXPECT_LT(yhtest::BytesOnDisk(to), kSize / 4) << "the holes take no blocks";
}

TEST(CopyFile, CopiesAFileWithoutHoles) {
  yhtest::TempDir dir;
  const std::string bytes(300000, 'x');
  yhtest::WriteFile(dir.Path() + "full", bytes);
  const yh::Fd source(platform::OpenForReading(dir.Path() + "full"));
  const std::string to = dir.Path() + "copy";
  {
    const yh::Fd copy = OpenNew(to);
    EXPECT_EQ(yh::CopyFile(source.Get(), copy.Get(), to), bytes.size());
  }
  EXPECT_EQ(ReadFile(to), bytes);
}

}  // namespace
}  // namespace yhtool
