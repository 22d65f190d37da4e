#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "recovery/RecoverRows.h"
#include "support/StoredDatabase.h"

namespace {

using yhtest::BuildStoredDatabase;
using yhtest::StoredDatabase;

const char kMessages[] = "CREATE TABLE message (ROWID INTEGER PRIMARY KEY, guid TEXT UNIQUE, text TEXT);";

// The rows that are not live whose third value is `text`.
std::vector<RecoveredRow> RowsWithText(const RecoveredRows& recovered, const std::string& text) {
  std::vector<RecoveredRow> rows;
  for (const RecoveredRow& row : recovered.rows) {
    if (row.status != RowStatus::Live && row.values.size() == 3 && row.values[2].bytes == text) rows.push_back(row);
  }
  return rows;
}

RecoveredRows Recover(const StoredDatabase& stored) {
  return RecoverRows(FileImage(stored.database, stored.wal, stored.journal), false);
}

// The one row, not live, whose third value is `text`, of the database that `sql` builds.
std::optional<RecoveredRow> OnlyRowWithText(const std::string& sql, const std::string& text) {
  const std::vector<RecoveredRow> rows = RowsWithText(Recover(BuildStoredDatabase(sql)), text);
  EXPECT_EQ(rows.size(), 1u) << text;
  if (rows.size() != 1) return std::nullopt;
  return rows[0];
}

// That row, expected to be an earlier version of the live row `liveRowid`.
std::optional<RecoveredRow> EarlierVersionWithText(const std::string& sql, const std::string& text, int64_t liveRowid) {
  std::optional<RecoveredRow> row = OnlyRowWithText(sql, text);
  if (row) {
    EXPECT_EQ(row->status, RowStatus::EarlierVersion) << text;
    EXPECT_EQ(row->liveRowid, liveRowid) << text;
  }
  return row;
}

TEST(RecoverEarlierVersions, ARowInsertedAgainUnderANewRowidWithItsUniqueKeyIsAnEarlierVersion) {
  const std::optional<RecoveredRow> row = EarlierVersionWithText(
      std::string(kMessages) + "INSERT INTO message VALUES (1, 'guid-1', 'first words'), (2, 'guid-2', 'other');"
                               "INSERT OR REPLACE INTO message VALUES (3, 'guid-1', 'second words');",
      "first words", 3);
  ASSERT_TRUE(row);
  EXPECT_EQ(row->values[1].bytes, "guid-1");
}

TEST(RecoverEarlierVersions, AnOlderFrameOfAnotherRowidWithTheKeyIsAnEarlierVersion) {
  const std::optional<RecoveredRow> row = EarlierVersionWithText(
      "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0;" + std::string(kMessages) +
          "INSERT INTO message VALUES (1, 'guid-1', 'logged words'); PRAGMA secure_delete=ON;"
          "INSERT OR REPLACE INTO message VALUES (5, 'guid-1', 'replacement');",
      "logged words", 5);
  ASSERT_TRUE(row);
  EXPECT_EQ(row->source, RowSource::Wal);
  EXPECT_EQ(row->rowid, 1);
}

TEST(RecoverEarlierVersions, ARowWhoseKeyNoLiveRowHoldsStaysDeleted) {
  const std::optional<RecoveredRow> row =
      OnlyRowWithText(std::string(kMessages) + "CREATE UNIQUE INDEX by_text ON message (text);"
                                               "INSERT INTO message VALUES (1, 'guid-1', 'gone'), (2, 'guid-2', 'kept');"
                                               "DELETE FROM message WHERE ROWID = 1;",
                      "gone");
  ASSERT_TRUE(row);
  EXPECT_EQ(row->status, RowStatus::Deleted);
  EXPECT_FALSE(row->liveRowid);
}

TEST(RecoverEarlierVersions, AKeyOfAUniqueIndexLinksToo) {
  EXPECT_TRUE(EarlierVersionWithText(
      "CREATE TABLE note (id INTEGER PRIMARY KEY, title TEXT, body TEXT); CREATE UNIQUE INDEX by_title ON note (title);"
      "INSERT INTO note VALUES (1, 'shopping', 'milk'), (2, 'todo', 'call'), (3, 'ideas', 'many');"
      "INSERT OR REPLACE INTO note VALUES (4, 'shopping', 'milk and bread');",
      "milk", 4));
}

TEST(RecoverEarlierVersions, ARowidUnknownCopyOfTheLiveRowIsLeftOut) {
  // The same values again under a new rowid: the freed cell tells nothing new.
  const RecoveredRows recovered = Recover(BuildStoredDatabase(
      std::string(kMessages) + "INSERT INTO message VALUES (1, 'guid-1', 'same words'), (2, 'guid-2', 'other');"
                               "INSERT OR REPLACE INTO message VALUES (3, 'guid-1', 'same words');"));
  EXPECT_TRUE(RowsWithText(recovered, "same words").empty());
}

}  // namespace
