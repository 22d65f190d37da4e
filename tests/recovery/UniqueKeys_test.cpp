#include <gtest/gtest.h>
#include <sqlite3.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "recovery/FileImage.h"
#include "recovery/Schema.h"
#include "recovery/UniqueIndex.h"
#include "support/StoredDatabase.h"

namespace {

using Key = std::pair<uint32_t, std::vector<size_t>>;  // root page, columns

// The unique indexes over plain columns that SQLite itself lists for the
// table (PRAGMA index_list and index_info), partial ones left out.
std::set<Key> SqliteKeys(const std::string& path, const std::string& table) {
  std::set<Key> keys;
  sqlite3* db = nullptr;
  sqlite3_open_v2(("file:" + path + "?immutable=1").c_str(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
  sqlite3_stmt* list = nullptr;
  sqlite3_prepare_v2(db,
                     ("SELECT l.name, m.rootpage FROM pragma_index_list('" + table +
                      "') l JOIN sqlite_master m ON m.name = l.name WHERE l.\"unique\" AND NOT l.partial")
                         .c_str(),
                     -1, &list, nullptr);
  while (sqlite3_step(list) == SQLITE_ROW) {
    const std::string name = reinterpret_cast<const char*>(sqlite3_column_text(list, 0));
    Key key{static_cast<uint32_t>(sqlite3_column_int(list, 1)), {}};
    sqlite3_stmt* info = nullptr;
    sqlite3_prepare_v2(db, ("SELECT cid FROM pragma_index_info('" + name + "') ORDER BY seqno").c_str(), -1, &info,
                       nullptr);
    bool plain = true;
    while (sqlite3_step(info) == SQLITE_ROW) {
      const int column = sqlite3_column_int(info, 0);
      plain &= column >= 0;
      key.second.push_back(static_cast<size_t>(column));
    }
    sqlite3_finalize(info);
    if (plain) keys.insert(key);
  }
  sqlite3_finalize(list);
  sqlite3_close(db);
  return keys;
}

std::set<Key> OurKeys(const TableShape& table) {
  std::set<Key> keys;
  for (const UniqueKey& key : table.uniqueKeys) keys.insert({key.rootPage, key.columns});
  return keys;
}

TEST(UniqueKeys, AreTheUniqueIndexesSqliteKeeps) {
  const yhtest::StoredDatabaseFile file(
      "CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT UNIQUE NOT NULL, text TEXT);"
      "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT, service TEXT, UNIQUE (id, service));"
      "CREATE TABLE props (key TEXT PRIMARY KEY, value, UNIQUE (key));"
      "CREATE TABLE pair (a INT, b TEXT, c, PRIMARY KEY (a, b), UNIQUE (c COLLATE NOCASE), UNIQUE (b DESC, a));"
      "CREATE TABLE alias (id INTEGER, v TEXT UNIQUE, PRIMARY KEY (id), UNIQUE (id));"
      "CREATE TABLE plain (x, y, z);"
      "CREATE UNIQUE INDEX plain_xy ON plain (y, x DESC);"
      "CREATE UNIQUE INDEX plain_expr ON plain (lower(z));"
      "CREATE UNIQUE INDEX plain_partial ON plain (z) WHERE z > 0;"
      "CREATE INDEX plain_z ON plain (z);"
      "CREATE TABLE \"quoted name\" (\"a b\" TEXT UNIQUE);");
  const std::vector<TableShape> tables = ReadSchema(FileImage(yhtest::ReadBytes(file.Path())));
  ASSERT_EQ(tables.size(), 8u);
  for (const TableShape& table : tables) {
    if (table.name == "sqlite_sequence") continue;
    EXPECT_EQ(OurKeys(table), SqliteKeys(file.Path(), table.name)) << table.name;
    EXPECT_FALSE(table.uniqueKeys.empty()) << table.name;
  }
}

TEST(UniqueKeys, ComeFromUniqueIndexesOverPlainColumnsOnly) {
  TableShape table;
  ASSERT_TRUE(ParseCreateTable("CREATE TABLE t (a, b, c)", &table));
  UniqueKey key;
  ASSERT_TRUE(ParseUniqueIndex("CREATE UNIQUE INDEX IF NOT EXISTS i ON t (\"c\" COLLATE BINARY, a ASC)", table, &key));
  EXPECT_EQ(key.columns, (std::vector<size_t>{2, 0}));
  EXPECT_FALSE(ParseUniqueIndex("CREATE INDEX i ON t (a)", table, &key)) << "not unique";
  EXPECT_FALSE(ParseUniqueIndex("CREATE UNIQUE INDEX i ON t (a + b)", table, &key)) << "an expression";
  EXPECT_FALSE(ParseUniqueIndex("CREATE UNIQUE INDEX i ON t (a) WHERE b IS NOT NULL", table, &key)) << "partial";
  EXPECT_FALSE(ParseUniqueIndex("CREATE UNIQUE INDEX i ON t (missing)", table, &key)) << "no such column";
}

}  // namespace
