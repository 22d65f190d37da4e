#include "recovery/IndexTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "recovery/Schema.h"
#include "support/StoredDatabase.h"

namespace {

TEST(IndexTree, GivesEveryEntryOfLeafAndInteriorPagesInKeyOrder) {
  // Long keys on small pages: interior pages hold entries, some overflow.
  std::string sql = "PRAGMA page_size=512; CREATE TABLE t (id INTEGER PRIMARY KEY, k TEXT UNIQUE); BEGIN;";
  for (int i = 1; i <= 400; ++i) {
    sql += "INSERT INTO t (k) VALUES (printf('key %04d ', " + std::to_string((i * 37) % 400) + ") || hex(zeroblob(" +
           std::to_string(i % 50 == 0 ? 400 : 30) + ")));";
  }
  const yhtest::StoredDatabase stored = yhtest::BuildStoredDatabase(sql + "COMMIT;");
  const FileImage image(stored.database);
  const std::vector<TableShape> tables = ReadSchema(image);
  ASSERT_EQ(tables.size(), 1u);
  ASSERT_EQ(tables[0].uniqueKeys.size(), 1u);
  std::vector<std::string> keys;
  std::vector<int64_t> rowids;
  PageSet seen(image.PageCount());
  ForEachIndexEntry(image, tables[0].uniqueKeys[0].rootPage, &seen, [&](const SqlValues& entry) {
    ASSERT_EQ(entry.size(), 2u);
    keys.push_back(entry[0].bytes);
    rowids.push_back(entry[1].integer);
  });
  ASSERT_EQ(keys.size(), 400u);
  EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
  for (size_t i = 0; i < keys.size(); ++i) {
    // Key n was inserted as row i with (i * 37) % 400 == n.
    const int n = std::stoi(keys[i].substr(4, 4));
    EXPECT_EQ((rowids[i] * 37) % 400, n) << keys[i];
  }
  EXPECT_NE(std::find_if(keys.begin(), keys.end(), [](const std::string& key) { return key.size() > 500; }),
            keys.end())
      << "an entry read through its overflow chain";
}

TEST(IndexTree, EndsACycleAndIgnoresTablePages) {
  const yhtest::StoredDatabase stored =
      yhtest::BuildStoredDatabase("CREATE TABLE t (id INTEGER PRIMARY KEY, k TEXT UNIQUE); INSERT INTO t (k) VALUES ('a');");
  const FileImage image(stored.database);
  const std::vector<TableShape> tables = ReadSchema(image);
  int entries = 0;
  PageSet seen(image.PageCount());
  ForEachIndexEntry(image, tables[0].rootPage, &seen, [&](const SqlValues&) { ++entries; });
  EXPECT_EQ(entries, 0) << "a table's root is no index page";
  ForEachIndexEntry(image, tables[0].uniqueKeys[0].rootPage, &seen, [&](const SqlValues&) { ++entries; });
  ForEachIndexEntry(image, tables[0].uniqueKeys[0].rootPage, &seen, [&](const SqlValues&) { ++entries; });
  EXPECT_EQ(entries, 1) << "a page met twice is read once";
}

}  // namespace
