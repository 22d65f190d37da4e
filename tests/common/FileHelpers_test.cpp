#include "common/FileHelpers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace {

TEST(FileHelpers, FileExistsWithItsSize) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "file.bin";
  yhtest::WriteFile(path, std::string(1234, 'x'));
  EXPECT_NE(VQIsFileExists(path.c_str()), 0);
  EXPECT_EQ(VQGetFileSize(path.c_str()), 1234u);
}

TEST(FileHelpers, EmptyFileExistsWithSizeZero) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "empty";
  yhtest::WriteFile(path, "");
  EXPECT_NE(VQIsFileExists(path.c_str()), 0);
  EXPECT_EQ(VQGetFileSize(path.c_str()), 0u);
}

TEST(FileHelpers, MissingFileIsAbsentWithSizeZero) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "missing";
  EXPECT_EQ(VQIsFileExists(path.c_str()), 0);
  EXPECT_EQ(VQGetFileSize(path.c_str()), 0u);
}

TEST(FileHelpers, FolderAndLinkToFolderExist) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  yhtest::TempDir dir;
  const std::string link = dir.Path() + "link";
  ASSERT_TRUE(yhtest::MakeSymlink(dir.Path(), link));
  EXPECT_NE(VQIsFileExists(dir.Path().c_str()), 0);
  EXPECT_NE(VQIsFileExists(link.c_str()), 0);
  EXPECT_NE(VQIsFileExists((link + "/").c_str()), 0);
}

TEST(FileHelpers, DanglingLinkIsAbsent) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  yhtest::TempDir dir;
  const std::string link = dir.Path() + "dangling";
  ASSERT_TRUE(yhtest::MakeSymlink(dir.Path() + "nowhere", link));
  EXPECT_EQ(VQIsFileExists(link.c_str()), 0);
}

TEST(FileHelpers, LittleEndianMatchesTheHost) {
  const uint32_t value = 0x01020304;
  unsigned char bytes[4];
  std::memcpy(bytes, &value, 4);
  EXPECT_EQ(VQIsLittleEndian() != 0, bytes[0] == 0x04);
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  EXPECT_NE(VQIsLittleEndian(), 0);
#endif
}

}  // namespace
