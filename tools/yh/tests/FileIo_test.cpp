#include "FileIo.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "Fd.h"
#include "YhRun.h"
#include "support/BackupBuilder.h"

namespace yhtool {
namespace {

constexpr off_t kSize = 8 << 20;

yh::Fd OpenNew(const std::string& path) {
  return yh::Fd(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
}

TEST(CopyFile, CopiesEveryByteAndLeavesHolesUnwritten) {
  yhtest::TempDir dir;
  const std::string from = dir.Path() + "sparse";
  {
    const yh::Fd file = OpenNew(from);
    ASSERT_EQ(::ftruncate(file.Get(), kSize), 0);
    ASSERT_EQ(::pwrite(file.Get(), "head", 4, 0), 4);
    ASSERT_EQ(::pwrite(file.Get(), "middle", 6, kSize / 2), 6);
  }
  const yh::Fd source(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
  const std::string to = dir.Path() + "copy";
  {
    const yh::Fd copy = OpenNew(to);
    EXPECT_EQ(yh::CopyFile(source.Get(), copy.Get(), to), static_cast<uint64_t>(kSize));
  }
  EXPECT_EQ(ReadFile(to), ReadFile(from));
  struct stat status {};
  ASSERT_EQ(::stat(to.c_str(), &status), 0);
  EXPECT_LT(status.st_blocks * 512, kSize / 4) << "the holes take no blocks";
}

TEST(CopyFile, CopiesAFileWithoutHoles) {
  yhtest::TempDir dir;
  const std::string bytes(300000, 'x');
  yhtest::WriteFile(dir.Path() + "full", bytes);
  const yh::Fd source(::open((dir.Path() + "full").c_str(), O_RDONLY | O_CLOEXEC));
  const std::string to = dir.Path() + "copy";
  {
    const yh::Fd copy = OpenNew(to);
    EXPECT_EQ(yh::CopyFile(source.Get(), copy.Get(), to), bytes.size());
  }
  EXPECT_EQ(ReadFile(to), bytes);
}

}  // namespace
}  // namespace yhtool
