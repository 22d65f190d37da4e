#include "platform/FileSystem.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(FileSystem, AnAbsolutePathStartsAtADriveOrAShare) {
  EXPECT_TRUE(platform::IsAbsolutePath("C:/Users"));
  EXPECT_TRUE(platform::IsAbsolutePath("d:\\backups"));
  EXPECT_TRUE(platform::IsAbsolutePath("\\\\server\\share"));
  EXPECT_FALSE(platform::IsAbsolutePath("C:Users"));
  EXPECT_FALSE(platform::IsAbsolutePath("/tmp"));
  EXPECT_FALSE(platform::IsAbsolutePath("backups"));
  EXPECT_FALSE(platform::IsAbsolutePath(""));
}

TEST(FileSystem, APortablePathHasSlashesBetweenNames) {
  EXPECT_EQ(platform::PortablePath("C:\\Users\\Ada/Backup\\"), "C:/Users/Ada/Backup/");
}

TEST(FileSystem, ANonAsciiNameIsKeptAsUtf8) {
  const std::string folder = platform::MakeUniqueFolder(platform::TemporaryFolder(), "yh-");
  ASSERT_FALSE(folder.empty());
  const std::string name = folder + "B\xc3\xa4" "ckup.txt";
  const int fd = platform::CreatePrivateFile(name);
  ASSERT_GE(fd, 0);
  ASSERT_TRUE(platform::WriteAll(fd, "x", 1));
  ASSERT_TRUE(platform::CloseFile(fd));
  EXPECT_EQ(platform::ListFolder(folder), std::vector<std::string>{"B\xc3\xa4" "ckup.txt"});
  platform::PathInfo info;
  ASSERT_TRUE(platform::Stat(name, &info));
  EXPECT_EQ(info.size, 1u);
  platform::RemoveTree(folder);
  EXPECT_FALSE(platform::Stat(folder));
}

TEST(FileSystem, FileNamesLoseWhatWindowsRefuses) {
  EXPECT_EQ(platform::SystemFileName("IMG_0001.JPG"), "IMG_0001.JPG");
  EXPECT_EQ(platform::SystemFileName("a<b>c:d\"e|f?g*h.jpg"), "a_b_c_d_e_f_g_h.jpg");
  EXPECT_EQ(platform::SystemFileName("name."), "name_");
  EXPECT_EQ(platform::SystemFileName("name "), "name_");
  EXPECT_EQ(platform::SystemFileName("CON"), "_CON");
  EXPECT_EQ(platform::SystemFileName("nul.txt"), "_nul.txt");
  EXPECT_EQ(platform::SystemFileName("Com1.tar.gz"), "_Com1.tar.gz");
  EXPECT_EQ(platform::SystemFileName("LPT9"), "_LPT9");
  EXPECT_EQ(platform::SystemFileName("COM0"), "COM0");
  EXPECT_EQ(platform::SystemFileName("CONSOLE.log"), "CONSOLE.log");
}

}  // namespace
