#include "SafeName.h"

#include <gtest/gtest.h>

#include <string>

namespace yh {
namespace {

TEST(YhSafeFileName, KeepsOrdinaryNames) {
  EXPECT_EQ(SafeFileName("IMG_0001.JPG", "x"), "IMG_0001.JPG");
  EXPECT_EQ(SafeFileName("20140612 093015.m4a", "x"), "20140612 093015.m4a");
  EXPECT_EQ(SafeFileName("Grace’s café.heic", "x"), "Grace’s café.heic");
}

TEST(YhSafeFileName, MakesOnePathComponent) {
  EXPECT_EQ(SafeFileName("../../etc/passwd", "x"), "___.._etc_passwd");
  EXPECT_EQ(SafeFileName("/etc/passwd", "x"), "_etc_passwd");
  EXPECT_EQ(SafeFileName("a\\b", "x"), "a_b");
  EXPECT_EQ(SafeFileName("..", "x"), "__");
  EXPECT_EQ(SafeFileName(".", "x"), "_");
  EXPECT_EQ(SafeFileName(".profile", "x"), "_profile");
}

TEST(YhSafeFileName, ReplacesControlCharactersAndBrokenUtf8) {
  EXPECT_EQ(SafeFileName("a\nb\tc\x1b[0m\x7f", "x"), "a_b_c_[0m_");
  EXPECT_EQ(SafeFileName("\xc2\x9b"
                         "2J",
                         "x"),
            "_2J")
      << "C1 control CSI";
  EXPECT_EQ(SafeFileName("\xff\xfe", "x"), "__");
  EXPECT_EQ(SafeFileName("\xc3", "x"), "_") << "cut sequence";
  EXPECT_EQ(SafeFileName("\xc0\xaf", "x"), "__") << "overlong slash";
  EXPECT_EQ(SafeFileName("\xed\xa0\x80", "x"), "___") << "surrogate";
}

TEST(YhSafeFileName, EmptyGivesTheFallback) { EXPECT_EQ(SafeFileName("", "unnamed"), "unnamed"); }

TEST(YhSafeFileName, LongNamesAreCutKeepingTheExtension) {
  const std::string name = SafeFileName(std::string(300, 'a') + ".jpeg", "x");
  EXPECT_EQ(name, std::string(kMaxNameBytes - 5, 'a') + ".jpeg");
  // Not inside a character: "é" is two bytes.
  std::string accented;
  for (int i = 0; i < 150; ++i) accented += "é";
  const std::string cut = SafeFileName(accented + ".m4a", "x");
  EXPECT_LE(cut.size(), kMaxNameBytes);
  EXPECT_EQ(cut.size() % 2, 0u) << "whole characters before .m4a";
  EXPECT_EQ(cut.substr(cut.size() - 4), ".m4a");
  // An ending too long for an extension is cut like the rest.
  EXPECT_EQ(SafeFileName(std::string(300, 'b') + "." + std::string(40, 'c'), "x").size(), kMaxNameBytes);
}

TEST(YhNumberedName, GoesBeforeTheExtension) {
  EXPECT_EQ(NumberedName("IMG_0001.JPG", 1), "IMG_0001-1.JPG");
  EXPECT_EQ(NumberedName("notes", 2), "notes-2");
  EXPECT_EQ(NumberedName("_profile", 3), "_profile-3");
  EXPECT_EQ(NumberedName("a.tar.gz", 4), "a.tar-4.gz");
}

}  // namespace
}  // namespace yh
