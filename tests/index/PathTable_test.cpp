#include "index/PathTable.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

struct Named {
  std::string text;
  std::string_view Path() const { return text; }
};

TEST(PathTable, FindsTheLastRecordOfEachPathAndKnowsWhichAreRepeated) {
  std::vector<Named> named = {{"a/b"}, {"c"}, {"a/b"}, {""}, {"d"}, {"a/b"}};
  std::vector<Named*> records;
  for (Named& record : named) records.push_back(&record);
  PathTable<Named> table;
  EXPECT_EQ(table.Find("c"), nullptr);
  EXPECT_FALSE(table.Repeated("c"));
  table.Fill(records, &Named::Path);
  EXPECT_EQ(table.size(), 4u);
  EXPECT_EQ(table.Find("a/b"), &named[5]);
  EXPECT_EQ(table.Find("c"), &named[1]);
  EXPECT_EQ(table.Find(""), &named[3]);
  EXPECT_EQ(table.Find("e"), nullptr);
  EXPECT_TRUE(table.Repeated("a/b"));
  EXPECT_FALSE(table.Repeated("c"));
  EXPECT_FALSE(table.Repeated("e"));
}

// Enough paths that many share their first slot: each is still found.
TEST(PathTable, FindsEveryPathOfALargeList) {
  std::vector<Named> named;
  for (int i = 0; i < 5000; ++i) named.push_back({"Library/Caches/" + std::to_string(i)});
  named.push_back({"Library/Caches/17"});
  std::vector<Named*> records;
  for (Named& record : named) records.push_back(&record);
  PathTable<Named> table;
  table.Fill(records, &Named::Path);
  EXPECT_EQ(table.size(), 5000u);
  for (int i = 0; i < 5000; ++i) {
    const std::string path = "Library/Caches/" + std::to_string(i);
    ASSERT_NE(table.Find(path), nullptr) << path;
    EXPECT_EQ(table.Find(path)->text, path);
    EXPECT_EQ(table.Repeated(path), i == 17) << path;
  }
  EXPECT_EQ(table.Find("Library/Caches/17"), &named.back());
}

}  // namespace
