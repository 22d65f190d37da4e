#include "recovery/RecoverRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

#include "support/StoredDatabase.h"

namespace {

using yhtest::BuildStoredDatabase;
using yhtest::StoredDatabase;

// Rows of one table and status, as "value|value" lines.
std::vector<std::string> Lines(const RecoveredRows& recovered, const std::string& table, RowStatus status) {
  std::vector<std::string> lines;
  for (const RecoveredRow& row : recovered.rows) {
    if (recovered.tables[row.table].name != table || row.status != status) continue;
    std::string line;
    for (const SqlValue& value : row.values) {
      if (&value != &row.values.front()) line += "|";
      if (value.kind == SqlValue::Kind::Integer) line += std::to_string(value.integer);
      if (value.kind == SqlValue::Kind::Text || value.kind == SqlValue::Kind::Blob) line += value.bytes;
      if (value.kind == SqlValue::Kind::Real) line += std::to_string(value.real);
    }
    lines.push_back(line);
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

RecoveredRows Recover(const StoredDatabase& stored) {
  return RecoverRows(FileImage(stored.database, stored.wal, stored.journal), true);
}

// "INSERT INTO t VALUES (1,'name 1'), ..." for ids first..last.
std::string Inserts(const std::string& table, int first, int last, const std::string& text) {
  std::string sql = "INSERT INTO " + table + " VALUES ";
  for (int i = first; i <= last; ++i) {
    sql += (i == first ? "(" : ",(") + std::to_string(i) + ",'" + text + " " + std::to_string(i) + "')";
  }
  return sql + ";";
}

const char kMessages[] = "CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, text TEXT, date INTEGER);";

TEST(RecoverRows, ReadsLiveRowsWithoutSqlite) {
  const StoredDatabase stored = BuildStoredDatabase(
      "CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT, score REAL, data BLOB);"
      "INSERT INTO t VALUES (1, 'Ada', 1.5, x'0001'), (7, NULL, -2.25, NULL);"
      "CREATE TABLE wide (a, b);" +
      Inserts("wide", 1, 500, std::string(300, 'w')));
  const RecoveredRows recovered = Recover(stored);
  ASSERT_EQ(recovered.tables.size(), 2u);
  EXPECT_EQ(recovered.tables[0].columns[1].name, "name");
  EXPECT_EQ(Lines(recovered, "t", RowStatus::Live),
            (std::vector<std::string>{"1|Ada|1.500000|" + std::string("\0\1", 2), "7||-2.250000|"}));
  EXPECT_EQ(Lines(recovered, "wide", RowStatus::Live).size(), 500u);
  for (const RecoveredRow& row : recovered.rows) EXPECT_EQ(row.source, RowSource::Live);
}

TEST(RecoverRows, ReadsOverflowingLiveRecords) {
  const std::string longText(20000, 'L');
  const StoredDatabase stored =
      BuildStoredDatabase("CREATE TABLE t (id INTEGER, body TEXT); INSERT INTO t VALUES (1, '" + longText + "');");
  EXPECT_EQ(Lines(Recover(stored), "t", RowStatus::Live), (std::vector<std::string>{"1|" + longText}));
}

TEST(RecoverRows, BringsBackASingleDeletedRowFromItsFreeblock) {
  const StoredDatabase stored = BuildStoredDatabase(std::string(kMessages) +
                                                    "INSERT INTO message (text, date) VALUES ('hello', 100), "
                                                    "('secret plan', 200), ('bye', 300);"
                                                    "DELETE FROM message WHERE ROWID = 2;");
  const RecoveredRows recovered = Recover(stored);
  EXPECT_EQ(Lines(recovered, "message", RowStatus::Live), (std::vector<std::string>{"1|hello|100", "3|bye|300"}));
  // The freeblock overwrote the rowid: the alias column stays NULL.
  EXPECT_EQ(Lines(recovered, "message", RowStatus::Deleted), (std::vector<std::string>{"|secret plan|200"}));
  for (const RecoveredRow& row : recovered.rows) {
    if (row.status == RowStatus::Deleted) {
      EXPECT_EQ(row.source, RowSource::Freeblock);
      EXPECT_FALSE(row.rowid);
      EXPECT_EQ(row.file, StoredIn::Database);
      const size_t text = stored.database.find("secret plan");
      EXPECT_GT(text, row.offset);
      EXPECT_LT(text, row.offset + 16);
    }
  }
}

TEST(RecoverRows, GivesNothingDeletedWhenDeletionWasSecure) {
  const StoredDatabase stored = BuildStoredDatabase(std::string(kMessages) + "PRAGMA secure_delete=ON;" +
                                                    "INSERT INTO message (text, date) VALUES ('a', 1), ('b', 2);"
                                                    "DELETE FROM message WHERE ROWID = 1;");
  EXPECT_TRUE(Lines(Recover(stored), "message", RowStatus::Deleted).empty());
}

TEST(RecoverRows, BringsBackAWholeDeletedConversationFromFreelistPages) {
  std::string sql = "CREATE TABLE chat (id INTEGER, body TEXT);" + Inserts("chat", 1, 400, "message body number");
  sql += "DELETE FROM chat WHERE id > 100;";
  const RecoveredRows recovered = Recover(BuildStoredDatabase(sql));
  EXPECT_EQ(Lines(recovered, "chat", RowStatus::Live).size(), 100u);
  const std::vector<std::string> deleted = Lines(recovered, "chat", RowStatus::Deleted);
  EXPECT_GE(deleted.size(), 300u * 9 / 10);
  for (const std::string& line : deleted) EXPECT_EQ(line.substr(line.find('|')), "|message body number " + line.substr(0, line.find('|')));
  bool fromFreelist = false;
  for (const RecoveredRow& row : recovered.rows) fromFreelist |= row.source == RowSource::Freelist;
  EXPECT_TRUE(fromFreelist);
}

TEST(RecoverRows, NeverReportsALiveRowAsDeleted) {
  // Page splits leave copies of live cells on freed and rebalanced pages.
  std::string sql = "CREATE TABLE t (id INTEGER, body TEXT);" + Inserts("t", 1, 600, "row");
  sql += "DELETE FROM t WHERE id % 3 = 0;" + Inserts("t", 601, 700, "new row");
  const RecoveredRows recovered = Recover(BuildStoredDatabase(sql));
  const std::vector<std::string> live = Lines(recovered, "t", RowStatus::Live);
  EXPECT_EQ(live.size(), 500u);
  for (const std::string& line : Lines(recovered, "t", RowStatus::Deleted)) {
    EXPECT_FALSE(std::binary_search(live.begin(), live.end(), line)) << line;
    const int id = std::stoi(line.substr(0, line.find('|')));
    EXPECT_EQ(id % 3, 0) << line;
  }
}

TEST(RecoverRows, BringsBackTheSurvivingRowsOfABulkDeleteFollowedByInserts) {
  std::string sql = "CREATE TABLE t (id INTEGER, body TEXT);" + Inserts("t", 1, 300, "bulk");
  sql += "DELETE FROM t WHERE id BETWEEN 50 AND 250;" + Inserts("t", 301, 320, "later");
  const StoredDatabase stored = BuildStoredDatabase(sql);
  // A deleted row survives when its text is still in the file, not cut.
  size_t surviving = 0;
  for (int id = 50; id <= 250; ++id) {
    const std::string text = "bulk " + std::to_string(id);
    for (size_t at = stored.database.find(text); at != std::string::npos; at = stored.database.find(text, at + 1)) {
      if (!std::isdigit(static_cast<unsigned char>(stored.database[at + text.size()]))) {
        ++surviving;
        break;
      }
    }
  }
  const std::vector<std::string> deleted = Lines(Recover(stored), "t", RowStatus::Deleted);
  EXPECT_GE(deleted.size() * 10, surviving * 9);
  EXPECT_GT(surviving, 50u);
  for (const std::string& line : deleted) {
    const int id = std::stoi(line.substr(0, line.find('|')));
    EXPECT_TRUE(id >= 50 && id <= 250) << line;
    EXPECT_EQ(line, std::to_string(id) + "|bulk " + std::to_string(id));
  }
}

TEST(RecoverRows, BringsBackADeletedOverflowingRecordWhoseChainSurvives) {
  // A table dropped first makes the freelist's trunk: the record's overflow
  // pages become its leaves, which keep their bytes.
  const std::string longText(6000, 'o');
  const StoredDatabase stored = BuildStoredDatabase(
      "CREATE TABLE gone (v); INSERT INTO gone VALUES (zeroblob(20000)); DROP TABLE gone;"
      "CREATE TABLE t (id INTEGER, body TEXT); INSERT INTO t VALUES (1, 'short'), (2, '" + longText +
      "'), (3, 'tail'); DELETE FROM t WHERE id = 2;");
  EXPECT_EQ(Lines(Recover(stored), "t", RowStatus::Deleted), (std::vector<std::string>{"2|" + longText}));
}

TEST(RecoverRows, ReadsUtf16Databases) {
  for (const char* encoding : {"UTF-16le", "UTF-16be"}) {
    const StoredDatabase stored = BuildStoredDatabase(std::string("PRAGMA encoding='") + encoding +
                                                      "'; CREATE TABLE t (id INTEGER, name TEXT);"
                                                      "INSERT INTO t VALUES (1, 'Zoë'), (2, 'Łukasz'), (3, 'x');"
                                                      "DELETE FROM t WHERE id = 2;");
    const RecoveredRows recovered = Recover(stored);
    EXPECT_EQ(Lines(recovered, "t", RowStatus::Live), (std::vector<std::string>{"1|Zoë", "3|x"})) << encoding;
    EXPECT_EQ(Lines(recovered, "t", RowStatus::Deleted), (std::vector<std::string>{"2|Łukasz"})) << encoding;
  }
}

TEST(RecoverRows, ReadsPagesWithReservedBytes) {
  const StoredDatabase stored = BuildStoredDatabase(
      "CREATE TABLE t (id INTEGER, v TEXT);" + Inserts("t", 1, 200, "reserved") + "DELETE FROM t WHERE id = 5;", 32);
  ASSERT_EQ(stored.database[20], 32);
  const RecoveredRows recovered = Recover(stored);
  EXPECT_EQ(Lines(recovered, "t", RowStatus::Live).size(), 199u);
  EXPECT_EQ(Lines(recovered, "t", RowStatus::Deleted), (std::vector<std::string>{"5|reserved 5"}));
}

}  // namespace

namespace {

TEST(RecoverRows, BringsBackTheRowsOfADroppedTableUnderItsOwnName) {
  // Two tables of one shape: the dropped one's rows stay its own.
  const StoredDatabase stored = BuildStoredDatabase("CREATE TABLE kept (id INTEGER, v TEXT);"
                                                    "CREATE TABLE gone (id INTEGER, v TEXT);" +
                                                    Inserts("kept", 1, 3, "kept") + Inserts("gone", 1, 50, "gone") +
                                                    "DROP TABLE gone;");
  const RecoveredRows recovered = Recover(stored);
  ASSERT_EQ(recovered.tables.size(), 2u);
  EXPECT_TRUE(recovered.tables[1].dropped);
  EXPECT_EQ(recovered.tables[1].name, "gone");
  const std::vector<std::string> gone = Lines(recovered, "gone", RowStatus::Deleted);
  EXPECT_GE(gone.size(), 45u);
  for (const std::string& line : gone) EXPECT_NE(line.find("|gone "), std::string::npos) << line;
  EXPECT_TRUE(Lines(recovered, "kept", RowStatus::Deleted).empty());
  EXPECT_EQ(Lines(recovered, "kept", RowStatus::Live).size(), 3u);
}

}  // namespace

namespace {

// Many rows over pages of 1024 bytes, a run of them deleted.
std::string AutoVacuumSql(const std::string& mode) {
  return "PRAGMA page_size=1024; PRAGMA auto_vacuum=" + mode + "; CREATE TABLE t (id INTEGER, v TEXT);" +
         Inserts("t", 1, 400, "vacuumed row") + "DELETE FROM t WHERE id BETWEEN 100 AND 300;";
}

TEST(RecoverRows, ReadsAutoVacuumDatabasesWithTheirPointerMapPages) {
  for (const char* mode : {"NONE", "FULL", "INCREMENTAL"}) {
    const RecoveredRows recovered = Recover(BuildStoredDatabase(AutoVacuumSql(mode)));
    EXPECT_EQ(Lines(recovered, "t", RowStatus::Live).size(), 199u) << mode;
    for (const std::string& line : Lines(recovered, "t", RowStatus::Deleted)) {
      const int id = std::stoi(line.substr(0, line.find('|')));
      EXPECT_TRUE(id >= 100 && id <= 300) << mode << ": " << line;
      EXPECT_EQ(line, std::to_string(id) + "|vacuumed row " + std::to_string(id)) << mode;
    }
  }
}

TEST(RecoverRows, BringsBackRowsFromTheFreelistOfAnIncrementalVacuumDatabase) {
  const RecoveredRows recovered = Recover(BuildStoredDatabase(AutoVacuumSql("INCREMENTAL")));
  size_t fromFreelist = 0;
  for (const RecoveredRow& row : recovered.rows) fromFreelist += row.source == RowSource::Freelist;
  EXPECT_GT(fromFreelist, 50u);
}

}  // namespace

namespace {

TEST(RecoverRows, ListsWithoutRowidTablesAndReadsNoRowOfThem) {
  std::string sql = "CREATE TABLE pairs (k TEXT PRIMARY KEY, v INTEGER) WITHOUT ROWID;"
                    "CREATE TABLE t (id INTEGER, v TEXT);";
  for (int i = 0; i < 100; ++i) sql += "INSERT INTO pairs VALUES ('key " + std::to_string(i) + "', " + std::to_string(i) + ");";
  sql += Inserts("t", 1, 20, "row") + "DELETE FROM pairs WHERE v < 50; DELETE FROM t WHERE id = 3;";
  const RecoveredRows recovered = Recover(BuildStoredDatabase(sql));
  ASSERT_EQ(recovered.tables.size(), 2u);
  EXPECT_TRUE(recovered.tables[0].withoutRowid);
  for (const RecoveredRow& row : recovered.rows) EXPECT_NE(row.table, 0u);
  EXPECT_EQ(Lines(recovered, "t", RowStatus::Live).size(), 19u);
  EXPECT_EQ(Lines(recovered, "t", RowStatus::Deleted), (std::vector<std::string>{"3|row 3"}));
}

}  // namespace

namespace {

TEST(RecoverRows, BringsBackRowsOfAPageWhoseEveryCellWasDeleted) {
  // Deleted one by one, out of order: each freed cell got a freeblock
  // header, then the emptied page forgot its freeblocks.
  std::string sql = "CREATE TABLE t (id INTEGER, name TEXT, score REAL);";
  for (int id : {1, 2, 3, 4, 5, 6, 7, 8}) {
    sql += "INSERT INTO t VALUES (" + std::to_string(id) + ", 'name " + std::to_string(id) + "', " +
           std::to_string(id) + ".5);";
  }
  for (int id : {4, 7, 2, 8, 1, 5, 3, 6}) sql += "DELETE FROM t WHERE id = " + std::to_string(id) + ";";
  const RecoveredRows recovered = Recover(BuildStoredDatabase(sql));
  EXPECT_TRUE(Lines(recovered, "t", RowStatus::Live).empty());
  const std::vector<std::string> deleted = Lines(recovered, "t", RowStatus::Deleted);
  EXPECT_GE(deleted.size(), 4u);
  for (const std::string& line : deleted) {
    const std::string id = line.substr(0, line.find('|'));
    EXPECT_EQ(line, id + "|name " + id + "|" + id + ".500000");
  }
}

}  // namespace

namespace {

TEST(RecoverRows, BringsBackRowsOfAnotherTableFromTheGapOfAReusedPage) {
  // A bulk delete empties pages of `message` onto the freelist; a trigger's
  // rows then take them, written at their end: the rest of each page still
  // holds the messages, as cells no tree points to.
  std::string sql = std::string(kMessages) +
                    "CREATE TABLE deleted_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT NOT NULL);"
                    "CREATE TRIGGER gone AFTER DELETE ON message BEGIN "
                    "INSERT INTO deleted_messages (guid) VALUES (printf('%036d', old.ROWID)); END;" +
                    Inserts("message (ROWID, text)", 1, 400, "a message long enough to fill its pages with few cells of them");
  const RecoveredRows recovered = Recover(BuildStoredDatabase(sql + "DELETE FROM message WHERE ROWID > 100;"));
  const std::vector<std::string> deleted = Lines(recovered, "message", RowStatus::Deleted);
  size_t whole = 0;
  for (int n = 101; n <= 400; ++n) {
    whole += std::count(deleted.begin(), deleted.end(),
                        std::to_string(n) + "|a message long enough to fill its pages with few cells of them " +
                            std::to_string(n) + "|");
  }
  // 175 of their records survive; those leading a gap that lost their first
  // bytes are not read, as no record before them says their table.
  EXPECT_GE(whole, 170u);
  for (const std::string& line : deleted) EXPECT_NE(line.find("|a message long enough"), std::string::npos) << line;
}

}  // namespace
