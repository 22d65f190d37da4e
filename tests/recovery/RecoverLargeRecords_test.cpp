#include <gtest/gtest.h>

#include <string>

#include "recovery/RecoverRows.h"
#include "support/StoredDatabase.h"

namespace {

using yhtest::BuildStoredDatabase;
using yhtest::StoredDatabase;

std::vector<RecoveredRow> DeletedRows(const StoredDatabase& stored) {
  std::vector<RecoveredRow> rows;
  for (RecoveredRow& row : RecoverRows(FileImage(stored.database, stored.wal, stored.journal), false).rows) {
    if (row.status == RowStatus::Deleted) rows.push_back(std::move(row));
  }
  return rows;
}

TEST(RecoverLargeRecords, BringsBackThePartBeforeAnOverflowPageThatBecameAFreelistTrunk) {
  // The record's one overflow page is the first page freed: the freelist's
  // trunk, whose first bytes now list the free pages.
  const std::string longText(6000, 'o');
  const std::vector<RecoveredRow> rows = DeletedRows(BuildStoredDatabase(
      "CREATE TABLE t (id INTEGER, body TEXT, tail TEXT); INSERT INTO t VALUES (1, 'short', 'a'), (2, '" + longText +
      "', 'after'), (3, 'tail', 'b'); DELETE FROM t WHERE id = 2;"));
  ASSERT_EQ(rows.size(), 1u);
  const RecoveredRow& row = rows[0];
  EXPECT_TRUE(row.partial);
  EXPECT_EQ(row.values[0].integer, 2);
  EXPECT_EQ(row.values[1].kind, SqlValue::Kind::Text);
  EXPECT_GT(row.values[1].bytes.size(), 1000u) << "the part on the record's own page";
  EXPECT_LT(row.values[1].bytes.size(), longText.size());
  EXPECT_EQ(row.values[1].bytes, std::string(row.values[1].bytes.size(), 'o'));
  EXPECT_EQ(row.values[2].kind, SqlValue::Kind::Null) << "past the cut";
}

TEST(RecoverLargeRecords, AWholeRecordIsNotPartial) {
  const std::vector<RecoveredRow> rows = DeletedRows(BuildStoredDatabase(
      "CREATE TABLE t (id INTEGER, body TEXT); INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, 'three');"
      "DELETE FROM t WHERE id = 2;"));
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_FALSE(rows[0].partial);
}

// A table of 150 columns: its records' headers take more than 127 bytes,
// their length a varint of two bytes.
std::string WideTable() {
  std::string sql = "CREATE TABLE wide (id INTEGER PRIMARY KEY";
  for (int c = 1; c < 150; ++c) sql += c % 2 ? ", t" + std::to_string(c) + " TEXT" : ", n" + std::to_string(c) + " INTEGER";
  return sql + ");";
}

std::string WideRow(int id) {
  std::string sql = "INSERT INTO wide VALUES (" + std::to_string(id);
  for (int c = 1; c < 150; ++c) {
    sql += c % 2 ? ", 'text " + std::to_string(id) + "." + std::to_string(c) + "'" : ", " + std::to_string(id * 1000 + c);
  }
  return sql + ");";
}

void ExpectWideRow(const RecoveredRow& row, int id) {
  ASSERT_EQ(row.values.size(), 150u);
  for (int c = 1; c < 150; ++c) {
    if (c % 2) {
      EXPECT_EQ(row.values[c].bytes, "text " + std::to_string(id) + "." + std::to_string(c)) << c;
    } else {
      EXPECT_EQ(row.values[c].integer, id * 1000 + c) << c;
    }
  }
}

TEST(RecoverLargeRecords, CarvesRecordsOfMoreThan126Columns) {
  std::string sql = WideTable();
  for (int id = 1; id <= 12; ++id) sql += WideRow(id);
  const std::vector<RecoveredRow> rows = DeletedRows(BuildStoredDatabase(sql + "DELETE FROM wide WHERE id IN (3, 7);"));
  ASSERT_EQ(rows.size(), 2u);
  for (const RecoveredRow& row : rows) {
    const int id = std::stoi(row.values[1].bytes.substr(5));
    EXPECT_TRUE(id == 3 || id == 7) << row.values[1].bytes;
    ExpectWideRow(row, id);
  }
}

TEST(RecoverLargeRecords, CarvesWideRecordsOfAFreedPage) {
  std::string sql = "PRAGMA page_size=8192;" + WideTable();
  for (int id = 1; id <= 60; ++id) sql += WideRow(id);
  const std::vector<RecoveredRow> rows = DeletedRows(BuildStoredDatabase(sql + "DELETE FROM wide WHERE id > 20;"));
  EXPECT_GE(rows.size(), 30u);
  for (const RecoveredRow& row : rows) {
    ASSERT_EQ(row.values[1].kind, SqlValue::Kind::Text);
    ExpectWideRow(row, std::stoi(row.values[1].bytes.substr(5)));
  }
}

}  // namespace
