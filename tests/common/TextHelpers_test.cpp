#include "common/TextHelpers.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "support/BackupBuilder.h"

namespace {

struct FreeDeleter {
  void operator()(char* p) const { std::free(p); }
};
using Owned = std::unique_ptr<char, FreeDeleter>;

// The text of a malloc'ed result, or "<null>"; frees the block.
std::string Take(char* text) {
  Owned owned(text);
  return owned ? std::string(owned.get()) : std::string("<null>");
}

TEST(TextHelpers, PathSeparator) { EXPECT_STREQ(GetPathSeperatorLine(), "/"); }

TEST(TextHelpers, FileNameFollowsTheLastSlash) {
  const char path[] = "/a/b/c.jpg";
  EXPECT_EQ(GetFileName(path), path + 5);
  EXPECT_STREQ(GetFileName("dir/"), "");
  EXPECT_STREQ(GetFileName("plain"), "plain");
}

TEST(TextHelpers, PostfixStartsAtTheLastDot) {
  const char path[] = "a.b/c.tar.gz";
  EXPECT_EQ(GetFilePostfix(path), path + 9);
  EXPECT_STREQ(GetFilePostfix(path), ".gz");
  EXPECT_EQ(GetFilePostfix("noext"), nullptr);
}

TEST(TextHelpers, ConcatStr) {
  EXPECT_EQ(Take(ConcatStr("ab", "cd")), "abcd");
  EXPECT_EQ(Take(ConcatStr("", "")), "");
}

TEST(TextHelpers, ConcatFilePath) {
  EXPECT_EQ(Take(ConcatFilePath("a/b", "c")), "a/b/c");
  EXPECT_EQ(Take(ConcatFilePath("a/b/", "c")), "a/b/c");
  EXPECT_EQ(Take(ConcatFilePath("ab", "c")), "abc");
  EXPECT_EQ(Take(ConcatFilePath("", "c")), "c");
}

TEST(TextHelpers, ConvertUnicode2UTF8KeepsTheBytes) {
  EXPECT_EQ(ConvertUnicode2UTF8("caf\xc3\xa9"), "caf\xc3\xa9");
}

TEST(TextHelpers, ReplaceChar) {
  EXPECT_EQ(ReplaceChar(nullptr, '_', '/'), nullptr);
  EXPECT_EQ(Take(ReplaceChar("a/b/c", '_', '/')), "a_b_c");
  EXPECT_EQ(Take(ReplaceChar("", '_', '/')), "");
}

TEST(TextHelpers, ReplaceStrDoesNotSearchTheInsertedText) {
  EXPECT_EQ(Take(ReplaceStr("a-b-c", "-", "--")), "a--b--c");
  EXPECT_EQ(Take(ReplaceStr("aaa", "a", "ab")), "ababab");
  EXPECT_EQ(Take(ReplaceStr("xyxyx", "xy", "")), "x");
  EXPECT_EQ(Take(ReplaceStr("none", "q", "z")), "none");
  EXPECT_EQ(Take(ReplaceStr("abc", "", "z")), "abc");
  EXPECT_EQ(ReplaceStr(nullptr, "a", "b"), nullptr);
}

TEST(TextHelpers, DeleteDelimsWithoutJoiner) {
  EXPECT_EQ(Take(DeleteDelims(" 12 34 ", " ", nullptr)), "1234");
}

TEST(TextHelpers, DeleteDelimsWithJoiner) {
  EXPECT_EQ(Take(DeleteDelims(" 12 34 ", " ", "-")), "12-34");
  EXPECT_EQ(Take(DeleteDelims("  John   Smith ", " ", " ")), "John Smith");
  EXPECT_EQ(Take(DeleteDelims("a-b c", " -", "+")), "a+b+c");
}

TEST(TextHelpers, DeleteDelimsOfNothingIsNull) {
  EXPECT_EQ(DeleteDelims("   ", " ", nullptr), nullptr);
  EXPECT_EQ(DeleteDelims("   ", " ", "-"), nullptr);
  EXPECT_EQ(DeleteDelims("", " ", nullptr), nullptr);
  EXPECT_EQ(DeleteDelims(nullptr, " ", nullptr), nullptr);
  EXPECT_EQ(DeleteDelims("---", "-", nullptr), nullptr);
}

TEST(TextHelpers, SplitWithFlag) {
  std::vector<std::string> out;
  SplitWithFlag("a;;b;", ';', out);
  EXPECT_EQ(out, (std::vector<std::string>{"a", "", "b"}));
}

TEST(TextHelpers, SplitWithFlagAppends) {
  std::vector<std::string> out{"kept"};
  SplitWithFlag("x", ';', out);
  SplitWithFlag("", ';', out);
  SplitWithFlag(";y", ';', out);
  EXPECT_EQ(out, (std::vector<std::string>{"kept", "x", "", "y"}));
}

TEST(TextHelpers, MemMemFindsTheFirstOccurrence) {
  const char hay[] = "ab\0cabcab";
  const size_t n = sizeof hay - 1;
  EXPECT_EQ(MemMem(hay, n, "cab", 3), hay + 3);
  EXPECT_EQ(MemMem(hay, n, "\0c", 2), hay + 2);
  EXPECT_EQ(MemMem(hay, n, "b", 1), hay + 1);
  EXPECT_EQ(MemMem(hay, n, "cab", 3), hay + 3);
  EXPECT_EQ(MemMem(hay, n, "bcab", 4), hay + 5);
  EXPECT_EQ(MemMem(hay, n, "cabx", 4), nullptr);
}

TEST(TextHelpers, MemMemStaysWithinTheLength) {
  const char hay[] = "abcdef";
  EXPECT_EQ(MemMem(hay, 5, "ef", 2), nullptr);
  EXPECT_EQ(MemMem(hay, 6, "ef", 2), hay + 4);
  EXPECT_EQ(MemMem(hay, 0, "a", 1), nullptr);
  EXPECT_EQ(MemMem(hay, 6, "a", 0), nullptr);
  EXPECT_EQ(MemMem(hay, 2, "abc", 3), nullptr);
  EXPECT_EQ(MemMem(hay, 3, "abc", 3), hay);
}

TEST(TextHelpers, YHfopenOpensLikeFopen) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "f.txt";
  yhtest::WriteFile(path, "hi");
  FILE* file = YHfopen(path.c_str(), "rb");
  ASSERT_NE(file, nullptr);
  char text[3] = {};
  EXPECT_EQ(std::fread(text, 1, 2, file), 2u);
  EXPECT_STREQ(text, "hi");
  std::fclose(file);
  EXPECT_EQ(YHfopen((dir.Path() + "missing").c_str(), "rb"), nullptr);
}

TEST(TakeMallocText, CopiesAndFreesTheBlockAndReadsNullAsEmpty) {
  EXPECT_EQ(TakeMallocText(ConcatStr("ab", "c")), "abc");
  EXPECT_EQ(TakeMallocText(DeleteDelims("   ", " ", nullptr)), "");
  EXPECT_EQ(TakeMallocText(nullptr), "");
}

TEST(AsciiLower, LowersAToZAndKeepsEveryOtherByte) {
  EXPECT_EQ(AsciiLower("Street ZIP\xC3\x84"), "street zip\xC3\x84");
  EXPECT_EQ(AsciiLower(""), "");
}

}  // namespace
