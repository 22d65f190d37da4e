#include "Flatten.h"

#include <gtest/gtest.h>

#include <sstream>

#include "Csv.h"
#include "TextTable.h"

namespace yh {
namespace {

plist_t Dict(std::initializer_list<std::pair<const char*, plist_t>> entries) {
  plist_t dict = plist_new_dict();
  for (const auto& [key, value] : entries) plist_dict_set_item(dict, key, value);
  return dict;
}

plist_t Array(std::initializer_list<plist_t> items) {
  plist_t array = plist_new_array();
  for (plist_t item : items) plist_array_append_item(array, item);
  return array;
}

plist_t Text(const char* text) { return plist_new_string(text); }

std::string Csv(const Rows& rows) {
  std::ostringstream out;
  WriteCsv(out, rows);
  return out.str();
}

TEST(YhFlatten, NestedListsGiveOneRowPerLeafWithTheParentsFields) {
  plist_t answer = Array({
      Dict({{"id", Text("+1555")},
            {"message", Array({Dict({{"text", Text("hi")}, {"type", plist_new_uint(0)}}),
                               Dict({{"text", Text("yo")}, {"type", plist_new_uint(1)}})})}}),
      Dict({{"id", Text("empty")}}),
  });
  EXPECT_EQ(Csv(Flatten(answer, {"id", "message.text", "message.type"})),
            "id,message.text,message.type\n+1555,hi,0\n+1555,yo,1\nempty,,\n");
  plist_free(answer);
}

TEST(YhFlatten, ListsNamedToStayInCellsFillOneCellOfEachRow) {
  plist_t answer = Array({Dict({{"id", Text("+1555")},
                                {"participants", Array({Dict({{"address", Text("+1555")}, {"name", Text("Ada")}})})},
                                {"message", Array({Dict({{"text", Text("hi")}}), Dict({{"text", Text("yo")}})})}})});
  EXPECT_EQ(Csv(Flatten(answer, {"id", "message.text"}, {"participants"})),
            "id,message.text,participants\n"
            "+1555,hi,\"[{\"\"address\"\":\"\"+1555\"\",\"\"name\"\":\"\"Ada\"\"}]\"\n"
            "+1555,yo,\"[{\"\"address\"\":\"\"+1555\"\",\"\"name\"\":\"\"Ada\"\"}]\"\n");
  plist_free(answer);
}

TEST(YhFlatten, NestedDictionariesGiveLabelAndValue) {
  plist_t answer = Array({Dict({{"id", plist_new_uint(7)},
                                {"properties", Dict({{"Mobile", Text("+1 555")}, {"Home", Text("a@b")}})},
                                {"name", Text("Ada")}})});
  EXPECT_EQ(Csv(Flatten(answer, {"id"})),
            "id,name,properties.label,properties.value\n7,Ada,Mobile,+1 555\n7,Ada,Home,a@b\n");
  plist_free(answer);
}

TEST(YhFlatten, UnknownKeysAreAddedInTheOrderMet) {
  plist_t answer = Array({Dict({{"b", Text("1")}}), Dict({{"c", Text("2")}, {"a", Text("3")}})});
  const Rows rows = Flatten(answer, {"a"});
  EXPECT_EQ(rows.columns, (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(Csv(rows), "a,b,c\n,1,\n3,,2\n");
  plist_free(answer);
}

// A field met after a list still comes before the list's columns, and an
// empty dictionary adds no label and value columns.
TEST(YhFlatten, FieldsComeBeforeLeavesAndEmptyListsAddNoColumns) {
  plist_t answer = Array({Dict({{"id", Text("1")},
                                {"message", Array({Dict({{"text", Text("hi")}})})},
                                {"name", Text("Ada")},
                                {"properties", plist_new_dict()}}),
                          Dict({{"id", Text("2")}, {"properties", Dict({{"Home", Text("x")}})}})});
  const Rows rows = Flatten(answer, {});
  EXPECT_EQ(rows.columns, (std::vector<std::string>{"id", "name", "message.text", "properties.label", "properties.value"}));
  EXPECT_EQ(Csv(rows), "id,name,message.text,properties.label,properties.value\n1,Ada,hi,,\n2,,,Home,x\n");
  plist_free(answer);
}

TEST(YhFlatten, NoAnswerGivesTheHeaderAlone) { EXPECT_EQ(Csv(Flatten(nullptr, {"x", "y"})), "x,y\n"); }

TEST(YhFlatten, ScalarsAndDeeperTreesBecomeText) {
  plist_t answer = Array({Text("lone"), Dict({{"list", Array({Dict({{"deep", Array({plist_new_bool(1)})}})})}})});
  EXPECT_EQ(Csv(Flatten(answer, {})), "value,list.deep\nlone,\n,[true]\n");
  plist_free(answer);
}

TEST(YhCsv, QuotesOnlyWhatNeedsIt) {
  EXPECT_EQ(CsvField("plain text"), "plain text");
  EXPECT_EQ(CsvField("a,b"), "\"a,b\"");
  EXPECT_EQ(CsvField("say \"hi\""), "\"say \"\"hi\"\"\"");
  EXPECT_EQ(CsvField("two\nlines"), "\"two\nlines\"");
  EXPECT_EQ(CsvField("cr\r"), "\"cr\r\"");
}

TEST(YhTextTable, AlignsCutsAndCleans) {
  Rows rows{{"name", "note"}, {{"Ada", "one\ntwo"}, {"Grace’s", std::string(50, 'x')}}};
  std::ostringstream out;
  WriteTable(out, rows);
  EXPECT_EQ(out.str(),
            "name     note\nAda      one two\nGrace’s  " + std::string(20, 'x') + "…" + std::string(19, 'x') + "\n");
}

}  // namespace
}  // namespace yh
