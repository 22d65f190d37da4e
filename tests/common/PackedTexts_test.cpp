#include "common/PackedTexts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace std::string_view_literals;

TEST(PackedTexts, GivesBackEveryTextAsViewAndCString) {
  const PackedTexts texts{"Ada", "", "+15550100", "", ""};
  ASSERT_EQ(texts.Count(), 5u);
  EXPECT_EQ(texts.View(0), "Ada");
  EXPECT_EQ(texts.View(1), "");
  EXPECT_EQ(texts.View(2), "+15550100");
  EXPECT_EQ(texts.View(4), "");
  EXPECT_STREQ(texts.AsCString(0), "Ada");
  EXPECT_STREQ(texts.AsCString(1), "");
  EXPECT_STREQ(texts.AsCString(2), "+15550100");
  EXPECT_STREQ(texts.AsCString(4), "");
}

// Offsets take one, two or four bytes as the block's size needs: texts
// ending on either side of each boundary, and more texts than one byte counts.
TEST(PackedTexts, KeepsTextsWhateverWidthTheirOffsetsNeed) {
  for (const size_t total : {size_t{254}, size_t{255}, size_t{256}, size_t{65534}, size_t{65535}, size_t{65536}, size_t{70000}}) {
    const std::string first(total - 3, 'a');
    const PackedTexts texts{first, "", "b"};
    ASSERT_EQ(texts.Count(), 3u) << total;
    EXPECT_EQ(texts.View(0), first) << total;
    EXPECT_EQ(texts.View(1), "") << total;
    EXPECT_EQ(texts.View(2), "b") << total;
    EXPECT_STREQ(texts.AsCString(2), "b") << total;
  }
  std::vector<std::string> many;
  for (int at = 0; at < 300; ++at) many.push_back(at % 3 == 0 ? "" : std::to_string(at));
  const std::vector<std::string_view> views(many.begin(), many.end());
  const PackedTexts texts(views.data(), views.size());
  ASSERT_EQ(texts.Count(), 300u);
  for (int at = 0; at < 300; ++at) EXPECT_EQ(texts.View(at), many[at]) << at;
}

TEST(PackedTexts, HasNoTextsWhenBuiltFromNone) {
  const PackedTexts none;
  EXPECT_EQ(none.Count(), 0u);
  EXPECT_EQ(none.View(0), "");
  EXPECT_STREQ(none.AsCString(3), "");
  const PackedTexts empty(nullptr, 0);
  EXPECT_EQ(empty.Count(), 0u);
}

TEST(PackedTexts, ReadsIndexesPastTheLastTextAsEmpty) {
  const PackedTexts texts{"a", "b"};
  EXPECT_EQ(texts.View(2), "");
  EXPECT_STREQ(texts.AsCString(9), "");
}

TEST(PackedTexts, KeepsEveryTextEmpty) {
  const PackedTexts texts{"", "", ""};
  ASSERT_EQ(texts.Count(), 3u);
  for (size_t at = 0; at < 3; ++at) {
    EXPECT_EQ(texts.View(at), "");
    EXPECT_STREQ(texts.AsCString(at), "");
  }
}

TEST(PackedTexts, KeepsZeroBytesInsideATextWhileTheCStringStopsAtTheFirst) {
  const PackedTexts texts{"a\0b"sv, "\0"sv, "c"};
  EXPECT_EQ(texts.View(0), "a\0b"sv);
  EXPECT_EQ(texts.View(1), "\0"sv);
  EXPECT_EQ(texts.View(2), "c");
  EXPECT_STREQ(texts.AsCString(0), "a");
  EXPECT_STREQ(texts.AsCString(1), "");
  EXPECT_STREQ(texts.AsCString(2), "c");
}

TEST(PackedTexts, BuildsFromAnArrayOfViews) {
  const std::vector<std::string> owned = {"one", "", "three"};
  const std::vector<std::string_view> views(owned.begin(), owned.end());
  const PackedTexts texts(views.data(), views.size());
  ASSERT_EQ(texts.Count(), 3u);
  for (size_t at = 0; at < owned.size(); ++at) EXPECT_EQ(texts.View(at), owned[at]) << at;
}

TEST(PackedTexts, ReplacesOneTextAndKeepsTheOthers) {
  PackedTexts texts{"", "+15550100", "2024-01-02 03:04:05", ""};
  texts.Replace(0, "Grace Hopper");
  EXPECT_EQ(texts.View(0), "Grace Hopper");
  EXPECT_EQ(texts.View(1), "+15550100");
  EXPECT_EQ(texts.View(2), "2024-01-02 03:04:05");
  EXPECT_EQ(texts.View(3), "");
  texts.Replace(2, "x");
  EXPECT_EQ(texts.View(2), "x");
  EXPECT_STREQ(texts.AsCString(2), "x");
  texts.Replace(1, "");
  EXPECT_EQ(texts.View(0), "Grace Hopper");
  EXPECT_EQ(texts.View(1), "");
  EXPECT_EQ(texts.View(2), "x");
  texts.Replace(3, "last");
  EXPECT_EQ(texts.View(3), "last");
  EXPECT_STREQ(texts.AsCString(3), "last");
  EXPECT_EQ(texts.Count(), 4u);
}

TEST(PackedTexts, ReplacesATextWithAnotherOfItsOwn) {
  PackedTexts texts{"", "+15550100"};
  texts.Replace(0, texts.View(1));
  EXPECT_EQ(texts.View(0), "+15550100");
  EXPECT_EQ(texts.View(1), "+15550100");
}

TEST(PackedTexts, RefusesToReplaceATextItDoesNotHave) {
  PackedTexts texts{"a"};
  EXPECT_THROW(texts.Replace(1, "b"), std::out_of_range);
  PackedTexts none;
  EXPECT_THROW(none.Replace(0, "b"), std::out_of_range);
}

TEST(PackedTexts, MovesItsTextsToTheNewOwner) {
  PackedTexts texts{"a", "bc"};
  const char* before = texts.AsCString(1);
  PackedTexts moved = std::move(texts);
  EXPECT_EQ(moved.View(1), "bc");
  EXPECT_EQ(moved.AsCString(1), before);
}

}  // namespace
