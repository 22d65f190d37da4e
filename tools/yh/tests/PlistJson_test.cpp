#include "PlistJson.h"

#include <gtest/gtest.h>

namespace yh {
namespace {

TEST(YhPlistJson, KeepsKeyOrderAndNodeTypes) {
  plist_t dict = plist_new_dict();
  plist_dict_set_item(dict, "zeta", plist_new_string("last first"));
  plist_dict_set_item(dict, "alpha", plist_new_uint(18446744073709551615u));
  plist_dict_set_item(dict, "real", plist_new_real(1.5));
  plist_dict_set_item(dict, "flag", plist_new_bool(0));
  plist_dict_set_item(dict, "list", plist_new_array());
  EXPECT_EQ(ToJson(dict).dump(),
            "{\"zeta\":\"last first\",\"alpha\":18446744073709551615,\"real\":1.5,\"flag\":false,\"list\":[]}");
  plist_free(dict);
}

TEST(YhPlistJson, DatesAndDataBecomeTexts) {
  plist_t date = plist_new_date(0, 0);
  EXPECT_EQ(ToJson(date), "2001-01-01T00:00:00Z");
  plist_free(date);
  plist_t data = plist_new_data(
      "\x00\xff"
      "ab",
      4);
  EXPECT_EQ(ToJson(data), "AP9hYg==");
  plist_free(data);
  plist_t one = plist_new_data("a", 1);
  EXPECT_EQ(ToJson(one), "YQ==");
  plist_free(one);
}

TEST(YhPlistJson, NullIsNull) { EXPECT_TRUE(ToJson(nullptr).is_null()); }

TEST(YhPlistJson, TextThatIsNotUtf8IsReplacedNotRefused) {
  plist_t text = plist_new_string("a\xff");
  EXPECT_EQ(JsonText(ToJson(text)), "\"a\xEF\xBF\xBD\"");
  EXPECT_EQ(CellText(text), "a\xff");
  plist_free(text);
}

TEST(YhPlistJson, CellsShowStringsBareAndOtherNodesAsJson) {
  plist_t number = plist_new_uint(42);
  EXPECT_EQ(CellText(number), "42");
  plist_free(number);
  plist_t text = plist_new_string("say \"hi\"");
  EXPECT_EQ(CellText(text), "say \"hi\"");
  plist_free(text);
}

// Numbers and truth values are written without a JSON value between: the
// texts are those of the JSON dump, at both ends of the range.
TEST(YhPlistJson, NumberAndTruthCellsAreTheirJsonTexts) {
  for (const uint64_t value : {uint64_t{0}, uint64_t{7}, uint64_t{UINT32_MAX} + 1, UINT64_MAX}) {
    plist_t number = plist_new_uint(value);
    EXPECT_EQ(CellText(number), ToJson(number).dump());
    plist_free(number);
  }
  for (const uint8_t truth : {uint8_t{0}, uint8_t{1}}) {
    plist_t node = plist_new_bool(truth);
    EXPECT_EQ(CellText(node), ToJson(node).dump());
    EXPECT_EQ(CellText(node), truth ? "true" : "false");
    plist_free(node);
  }
}

}  // namespace
}  // namespace yh
