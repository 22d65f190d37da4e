#include "DataScript.h"

#include <gtest/gtest.h>

#include <sstream>

namespace yhtool {
namespace {

using yh::DataScript;
using yh::Json;

TEST(DataScript, HandsTheDataToThePageByName) {
  EXPECT_EQ(DataScript("calls", Json::parse(R"({"records":[{"name":"Ada","size":3}]})")),
            "yhData(\"calls\", {\"records\":[{\"name\":\"Ada\",\"size\":3}]});\n");
}

TEST(DataScript, EscapesWhatCouldEndTheScriptOrReadAsMarkup) {
  const Json data = {{"text", "</script><b>&amp;</b>"}};
  EXPECT_EQ(DataScript("x", data),
            "yhData(\"x\", {\"text\":\"\\u003c/script\\u003e\\u003cb\\u003e\\u0026amp;\\u003c/b\\u003e\"});\n");
}

TEST(DataScript, EscapesTheLineSeparatorsAndControlCharacters) {
  const Json data = {{"text", "a\xE2\x80\xA8" "b\xE2\x80\xA9" "c\x01\x1b\n\""}};
  EXPECT_EQ(DataScript("x", data), "yhData(\"x\", {\"text\":\"a\\u2028b\\u2029c\\u0001\\u001b\\n\\\"\"});\n");
}

TEST(DataScript, KeepsOtherTextAndReplacesBytesThatAreNotUtf8) {
  const Json data = {{"name", "Ada’s \xFF iPhone"}};
  EXPECT_EQ(DataScript("x", data), "yhData(\"x\", {\"name\":\"Ada’s \xEF\xBF\xBD iPhone\"});\n");
}

TEST(DataScript, WrittenInPartsIsTheWholeScript) {
  const Json records = Json::parse(R"([{"text":"</script>\u2028"},{"name":"Ada","size":3}])");
  std::ostringstream out;
  yh::DataScriptWriter script(out, "a<b");
  script.Punctuation("{\"records\":[");
  script.Value(records[0]);
  script.Punctuation(",");
  script.Value(records[1]);
  script.Punctuation("]}");
  script.Finish();
  EXPECT_EQ(out.str(), DataScript("a<b", {{"records", records}}));
}

}  // namespace
}  // namespace yhtool
