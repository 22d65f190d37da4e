#include <gtest/gtest.h>

#include <random>
#include <string>

#include "recovery/RecoverRows.h"
#include "recovery/Varint.h"
#include "support/StoredDatabase.h"

namespace {

using yhtest::BuildStoredDatabase;

size_t LiveRows(const RecoveredRows& recovered) {
  size_t live = 0;
  for (const RecoveredRow& row : recovered.rows) live += row.status == RowStatus::Live;
  return live;
}

// 1000 rows over many pages of 1024 bytes, some of them deleted.
std::string ManyPages() {
  std::string sql = "PRAGMA page_size=1024; CREATE TABLE t (id INTEGER, v TEXT); BEGIN;";
  for (int i = 1; i <= 1000; ++i) sql += "INSERT INTO t VALUES (" + std::to_string(i) + ", 'row " + std::to_string(i) + "');";
  return sql + "COMMIT; DELETE FROM t WHERE id % 7 = 0;";
}

void PutUInt32(std::string* bytes, size_t offset, uint32_t value) {
  for (int i = 0; i < 4; ++i) (*bytes)[offset + i] = static_cast<char>(value >> (24 - 8 * i));
}

TEST(RecoverDamaged, ReadsTheIntactPagesOfATruncatedFile) {
  std::string database = BuildStoredDatabase(ManyPages()).database;
  ASSERT_GT(database.size(), 10u * 1024);
  database.resize(database.size() / 2 + 300);
  const size_t live = LiveRows(RecoverRows(FileImage(database), true));
  EXPECT_GT(live, 200u);
  EXPECT_LT(live, 858u);
}

TEST(RecoverDamaged, ReadsPagesBehindAZeroedHeader) {
  std::string database = BuildStoredDatabase("CREATE TABLE t (id INTEGER, v TEXT); INSERT INTO t VALUES (1, 'a');").database;
  ASSERT_EQ(ReadUInt16(database, 16), 4096u);
  std::fill(database.begin(), database.begin() + 100, '\0');
  EXPECT_EQ(LiveRows(RecoverRows(FileImage(database), true)), 1u);
}

TEST(RecoverDamaged, SkipsAGarbagePage) {
  std::string database = BuildStoredDatabase(ManyPages()).database;
  std::fill(database.begin() + 1024 * 10, database.begin() + 1024 * 11, '\xff');
  const size_t live = LiveRows(RecoverRows(FileImage(database), true));
  EXPECT_GT(live, 800u);
  EXPECT_LT(live, 858u);
}

TEST(RecoverDamaged, EndsLoopsInTreesChainsAndFreelists) {
  std::string database = BuildStoredDatabase(ManyPages() + "CREATE TABLE big (v TEXT);"
                                             "INSERT INTO big VALUES (randomblob(5000));"
                                             "CREATE TABLE gone (v); INSERT INTO gone VALUES (randomblob(9000));"
                                             "DROP TABLE gone;")
                             .database;
  const RecoveredRows before = RecoverRows(FileImage(database), true);
  ASSERT_GT(LiveRows(before), 800u);
  // The table's root is interior: point its right child at itself.
  const uint32_t root = before.tables[0].rootPage;
  const size_t rootOffset = (root - 1) * 1024;
  ASSERT_EQ(database[rootOffset], 5);
  PutUInt32(&database, rootOffset + 8, root);
  // The first freelist trunk points at itself.
  const uint32_t trunk = ReadUInt32(database, 32);
  ASSERT_NE(trunk, 0u);
  PutUInt32(&database, (trunk - 1) * 1024, trunk);
  const RecoveredRows after = RecoverRows(FileImage(database), true);
  EXPECT_GT(LiveRows(after), 0u);
}

TEST(RecoverDamaged, SurvivesRandomDamage) {
  const yhtest::StoredDatabase stored = BuildStoredDatabase(
      "PRAGMA page_size=512; PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0;"
      "CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT, b BLOB);"
      "INSERT INTO t VALUES (1, 'one', randomblob(2000)), (2, 'two', NULL), (3, 'three', x'00');"
      "DELETE FROM t WHERE id = 2;");
  std::mt19937 random(27);
  for (int round = 0; round < 300; ++round) {
    std::string database = stored.database;
    std::string wal = stored.wal;
    std::string* target = round % 2 ? &wal : &database;
    if (target->empty()) continue;
    for (int flip = 0; flip < 1 + round % 20; ++flip) {
      (*target)[random() % target->size()] = static_cast<char>(random());
    }
    if (round % 5 == 0) target->resize(random() % target->size());
    RecoverRows(FileImage(database, wal), true);
  }
  SUCCEED();
}

}  // namespace
