#include <gtest/gtest.h>

#include <string>

#include "recovery/RecoverRows.h"
#include "recovery/Varint.h"
#include "support/StoredDatabase.h"

namespace {

using yhtest::BuildStoredDatabase;
using yhtest::StoredDatabase;

const char kWal[] = "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0;";

// The one row whose second value is `text`, or nullptr.
const RecoveredRow* RowWithText(const RecoveredRows& recovered, const std::string& text) {
  const RecoveredRow* found = nullptr;
  for (const RecoveredRow& row : recovered.rows) {
    if (row.values.size() > 1 && row.values[1].bytes == text) {
      EXPECT_EQ(found, nullptr) << text << " reported twice";
      found = &row;
    }
  }
  return found;
}

RecoveredRows Recover(const StoredDatabase& stored) {
  return RecoverRows(FileImage(stored.database, stored.wal, stored.journal), true);
}

TEST(RecoverLogs, ReadsTheCurrentStateFromTheWal) {
  const StoredDatabase stored = BuildStoredDatabase(std::string(kWal) +
                                                    "CREATE TABLE t (id INTEGER, v TEXT);"
                                                    "INSERT INTO t VALUES (1, 'in the log');");
  ASSERT_FALSE(stored.wal.empty());
  EXPECT_EQ(stored.database.find("in the log"), std::string::npos);
  const RecoveredRows recovered = Recover(stored);
  const RecoveredRow* row = RowWithText(recovered, "in the log");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->status, RowStatus::Live);
  EXPECT_EQ(row->file, StoredIn::Wal);
  EXPECT_LT(row->offset, stored.wal.find("in the log"));
}

TEST(RecoverLogs, GivesEarlierVersionsAndDeletedRowsFromOlderFrames) {
  const StoredDatabase stored = BuildStoredDatabase(std::string(kWal) +
                                                    "CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT);"
                                                    "INSERT INTO t VALUES (1, 'draft'), (2, 'gone');"
                                                    "PRAGMA secure_delete=ON;"
                                                    "UPDATE t SET v = 'final version' WHERE id = 1;"
                                                    "DELETE FROM t WHERE id = 2;");
  const RecoveredRows recovered = Recover(stored);
  const RecoveredRow* draft = RowWithText(recovered, "draft");
  ASSERT_NE(draft, nullptr);
  EXPECT_EQ(draft->status, RowStatus::EarlierVersion);
  EXPECT_EQ(draft->source, RowSource::Wal);
  EXPECT_EQ(draft->rowid, 1);
  EXPECT_EQ(draft->values[0].integer, 1);
  const RecoveredRow* gone = RowWithText(recovered, "gone");
  ASSERT_NE(gone, nullptr);
  EXPECT_EQ(gone->status, RowStatus::Deleted);
  EXPECT_EQ(gone->source, RowSource::Wal);
  ASSERT_NE(RowWithText(recovered, "final version"), nullptr);
  EXPECT_EQ(RowWithText(recovered, "final version")->status, RowStatus::Live);
}

TEST(RecoverLogs, ReadsMainFilePagesThatTheWalReplaces) {
  const StoredDatabase stored = BuildStoredDatabase(std::string(kWal) +
                                                    "CREATE TABLE t (id INTEGER, v TEXT);"
                                                    "INSERT INTO t VALUES (1, 'checkpointed');"
                                                    "PRAGMA wal_checkpoint(TRUNCATE); PRAGMA secure_delete=ON;"
                                                    "DELETE FROM t;");
  const RecoveredRows recovered = Recover(stored);
  const RecoveredRow* row = RowWithText(recovered, "checkpointed");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->status, RowStatus::Deleted);
  EXPECT_EQ(row->file, StoredIn::Database);
}

TEST(RecoverLogs, ReadsMainFilePagesPastTheEndTheWalGives) {
  // Auto-vacuum gives back the freed pages at the end: the log's database
  // is shorter than the main file, whose last pages still hold their rows.
  std::string sql = "PRAGMA auto_vacuum=FULL;" + std::string(kWal) +
                    "CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT); BEGIN;";
  for (int n = 1; n <= 200; ++n) {
    sql += "INSERT INTO t VALUES (" + std::to_string(n) + ", 'row " + std::to_string(n) + std::string(100, '.') + "');";
  }
  const StoredDatabase stored =
      BuildStoredDatabase(sql + "COMMIT; PRAGMA wal_checkpoint(TRUNCATE); PRAGMA secure_delete=ON;"
                                "DELETE FROM t WHERE id > 20;");
  const RecoveredRows recovered = Recover(stored);
  const RecoveredRow* row = RowWithText(recovered, "row 190" + std::string(100, '.'));
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->status, RowStatus::Deleted);
  EXPECT_EQ(row->source, RowSource::Wal);
  EXPECT_EQ(row->file, StoredIn::Database);
  EXPECT_EQ(row->rowid, 190);
}

TEST(RecoverLogs, ReadsReplacedPagesThatAnotherTableNowHolds) {
  // Auto-vacuum gives the freed pages of `t` back; new rows of `other` take
  // their numbers. The main file's pages of those numbers still hold rows of `t`.
  std::string sql = "PRAGMA auto_vacuum=FULL;" + std::string(kWal) +
                    "CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT);"
                    "CREATE TABLE other (a INTEGER, b REAL, c BLOB); BEGIN;";
  for (int n = 1; n <= 200; ++n) {
    sql += "INSERT INTO t VALUES (" + std::to_string(n) + ", 'row " + std::to_string(n) + std::string(100, '.') + "');";
  }
  sql += "COMMIT; PRAGMA wal_checkpoint(TRUNCATE); PRAGMA secure_delete=ON; DELETE FROM t WHERE id > 20; BEGIN;";
  for (int n = 1; n <= 300; ++n) sql += "INSERT INTO other VALUES (" + std::to_string(n) + ", 0.5, zeroblob(90));";
  const RecoveredRows recovered = Recover(BuildStoredDatabase(sql + "COMMIT;"));
  const RecoveredRow* row = RowWithText(recovered, "row 190" + std::string(100, '.'));
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(recovered.tables[row->table].name, "t");
  EXPECT_EQ(row->status, RowStatus::Deleted);
  EXPECT_EQ(row->file, StoredIn::Database);
  EXPECT_EQ(row->rowid, 190);
}

TEST(RecoverLogs, ReadsFramesOfAnEarlierLogGeneration) {
  std::string sql = std::string(kWal) + "CREATE TABLE filler (v TEXT); CREATE TABLE t (id INTEGER, v TEXT);";
  for (int i = 0; i < 4; ++i) sql += "INSERT INTO filler VALUES (randomblob(3000));";
  sql += "INSERT INTO t VALUES (1, 'old generation'); PRAGMA secure_delete=ON; DELETE FROM t;"
         "PRAGMA wal_checkpoint; INSERT INTO filler VALUES ('restart');";
  const StoredDatabase stored = BuildStoredDatabase(sql);
  const size_t at = stored.wal.find("old generation");
  ASSERT_NE(at, std::string::npos);
  const uint32_t pageSize = ReadUInt32(stored.wal, 8);
  const size_t frame = 32 + (at - 32) / (24 + pageSize) * (24 + pageSize);
  ASSERT_NE(ReadUInt32(stored.wal, frame + 8), ReadUInt32(stored.wal, 16)) << "the frame is of an earlier salt";
  const RecoveredRows recovered = Recover(stored);
  const RecoveredRow* row = RowWithText(recovered, "old generation");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->status, RowStatus::Deleted);
  EXPECT_EQ(row->source, RowSource::Wal);
}

TEST(RecoverLogs, IgnoresATruncatedWalFrame) {
  StoredDatabase stored = BuildStoredDatabase(std::string(kWal) +
                                              "CREATE TABLE t (id INTEGER, v TEXT);"
                                              "INSERT INTO t VALUES (1, 'kept');"
                                              "INSERT INTO t VALUES (2, 'cut');");
  stored.wal.resize(stored.wal.size() - 100);
  const RecoveredRows recovered = Recover(stored);
  ASSERT_NE(RowWithText(recovered, "kept"), nullptr);
  EXPECT_EQ(RowWithText(recovered, "kept")->status, RowStatus::Live);
}

TEST(RecoverLogs, GivesDeletedRowsFromJournalPageImages) {
  const StoredDatabase stored = BuildStoredDatabase(
      "PRAGMA journal_mode=PERSIST; CREATE TABLE t (id INTEGER, v TEXT);"
      "INSERT INTO t VALUES (1, 'journalled'), (2, 'stays');"
      "PRAGMA secure_delete=ON; DELETE FROM t WHERE id = 1;");
  ASSERT_FALSE(stored.journal.empty());
  EXPECT_EQ(stored.database.find("journalled"), std::string::npos);
  const RecoveredRows recovered = Recover(stored);
  const RecoveredRow* row = RowWithText(recovered, "journalled");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->status, RowStatus::Deleted);
  EXPECT_EQ(row->source, RowSource::Journal);
  EXPECT_EQ(row->file, StoredIn::Journal);
  EXPECT_EQ(RowWithText(recovered, "stays")->status, RowStatus::Live);
}

}  // namespace
