#include "recovery/Classifier.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

SqlValue Integer(int64_t value) { return {SqlValue::Kind::Integer, value, 0, {}}; }
SqlValue Text(const std::string& text) { return {SqlValue::Kind::Text, 0, 0, text}; }

RecoveredRow Row(std::optional<int64_t> rowid, SqlValues values, RowStatus status = RowStatus::Deleted) {
  RecoveredRow row;
  row.rowid = rowid;
  row.values = std::move(values);
  row.status = status;
  return row;
}

// A message table: the rowid alias, a unique guid, a text.
std::vector<TableShape> Messages() {
  TableShape table;
  table.name = "message";
  table.columns = {{"ROWID", "INTEGER"}, {"guid", "TEXT"}, {"text", "TEXT"}};
  table.rowidColumn = 0;
  table.uniqueKeys = {{{1}, 9}};
  return {table};
}

// The statuses the classifier gives the rows once it met the live ones; "-" for a row left out.
std::vector<std::string> Classified(std::vector<RecoveredRow>* rows, const std::vector<RecoveredRow>& live,
                                    const std::vector<SqlValues>& indexEntries = {}) {
  const std::vector<TableShape> tables = Messages();
  Classifier classifier(tables, *rows);
  for (const SqlValues& entry : indexEntries) classifier.MeetIndexEntry(0, 0, entry);
  for (const RecoveredRow& row : live) classifier.Meet(row);
  std::vector<std::string> statuses;
  for (size_t i = 0; i < rows->size(); ++i) {
    statuses.push_back(classifier.Classify(i, &(*rows)[i]) ? RowStatusName((*rows)[i].status) : "-");
  }
  return statuses;
}

TEST(Classifier, SortsRowsByTheLiveRowOfTheirRowid) {
  std::vector<RecoveredRow> rows{Row(5, {Integer(5), Text("g5"), Text("same")}),
                                 Row(5, {Integer(5), Text("g5"), Text("draft")}),
                                 Row(6, {Integer(6), Text("g6"), Text("gone")}),
                                 Row(6, {Integer(6), Text("g6"), Text("gone")})};
  const std::vector<RecoveredRow> live{Row(5, {Integer(5), Text("g5"), Text("same")}, RowStatus::Live)};
  EXPECT_EQ(Classified(&rows, live), (std::vector<std::string>{"-", "earlier-version", "deleted", "-"}));
  EXPECT_EQ(rows[1].liveRowid, 5);
  EXPECT_FALSE(rows[2].liveRowid);
}

TEST(Classifier, LeavesOutARowOfUnknownRowidThatCopiesALiveRow) {
  // A freeblock overwrote the rowid: the alias column is NULL.
  std::vector<RecoveredRow> rows{Row(std::nullopt, {SqlValue(), Text("g5"), Text("same")}),
                                 Row(std::nullopt, {SqlValue(), Text("g7"), Text("other")})};
  const std::vector<RecoveredRow> live{Row(5, {Integer(5), Text("g5"), Text("same")}, RowStatus::Live)};
  EXPECT_EQ(Classified(&rows, live), (std::vector<std::string>{"-", "deleted"}));
}

TEST(Classifier, GivesARowTheLiveRowOfItsUniqueKey) {
  std::vector<RecoveredRow> rows{Row(std::nullopt, {SqlValue(), Text("g5"), Text("before")}),
                                 Row(2, {Integer(2), Text("g5"), Text("same")}),
                                 Row(std::nullopt, {SqlValue(), Text("g8"), Text("no key lives")})};
  const std::vector<RecoveredRow> live{Row(5, {Integer(5), Text("g5"), Text("same")}, RowStatus::Live)};
  EXPECT_EQ(Classified(&rows, live, {{Text("g5"), Integer(5)}, {Text("g6"), Integer(6)}}),
            (std::vector<std::string>{"earlier-version", "earlier-version", "deleted"}));
  EXPECT_EQ(rows[0].liveRowid, 5);
  EXPECT_EQ(rows[1].liveRowid, 5) << "another rowid: another version whatever its values";
}

}  // namespace
