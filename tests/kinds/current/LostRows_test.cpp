#include "kinds/current/LostRows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kinds/current/ScratchDatabase.h"

namespace current {
namespace {

SqlValue Integer(int64_t value) { return {SqlValue::Kind::Integer, value, 0, {}}; }
SqlValue Text(const std::string& text) { return {SqlValue::Kind::Text, 0, 0, text}; }

// message (ROWID alias, guid, text, extra), handle (no alias: id, note),
// sync_deleted_messages (guid).
RecoveredRows Tables() {
  RecoveredRows rows;
  rows.tables.push_back({"message", 2, {{"ROWID", "INTEGER"}, {"guid", "TEXT"}, {"text", "TEXT"}, {"extra", "TEXT"}}, 0});
  rows.tables.push_back({"handle", 3, {{"id", "TEXT"}, {"note", "TEXT"}}, -1});
  rows.tables.push_back({"sync_deleted_messages", 4, {{"guid", "TEXT"}}, -1});
  return rows;
}

RecoveredRow Row(size_t table, std::optional<int64_t> rowid, SqlValues values, RowStatus status,
                 RowSource source = RowSource::Freeblock) {
  RecoveredRow row;
  row.table = table;
  row.rowid = rowid;
  row.values = std::move(values);
  row.status = status;
  row.source = status == RowStatus::Live ? RowSource::Live : source;
  return row;
}

// Every row the query gives, its `columns` columns joined by "|" ("NULL"
// for NULL).
std::vector<std::string> Lines(Database& database, const std::string& query, int columns) {
  std::vector<std::string> lines;
  Database::Statement rows(database, query.c_str());
  while (rows.Step()) {
    std::string line;
    for (int column = 0; column < columns; ++column) {
      line += (column ? "|" : "") + (rows.IsNull(column) ? std::string("NULL") : rows.WholeText(column));
    }
    lines.push_back(line);
  }
  return lines;
}

TEST(ScratchDatabase, AShortRowAfterAFullOneHoldsNullsWhereItHasNoValues) {
  RecoveredRows rows = Tables();
  rows.rows.push_back(Row(0, 1, {Integer(1), Text("g1"), Text("first"), Text("extra one")}, RowStatus::Live));
  rows.rows.push_back(Row(0, 2, {Integer(2), SqlValue(), Text("second")}, RowStatus::Live));
  rows.rows.push_back(Row(1, 7, {Text("+4930"), Text("a note")}, RowStatus::Live));
  rows.rows.push_back(Row(1, std::nullopt, {SqlValue()}, RowStatus::Live));
  ScratchDatabase scratch(rows);
  scratch.Add({0, 1, 2, 3}, ScratchDatabase::WhenTaken::Skip);
  EXPECT_EQ(Lines(scratch.Get(), "SELECT ROWID, guid, text, extra FROM message ORDER BY ROWID", 4),
            (std::vector<std::string>{"1|g1|first|extra one", "2|NULL|second|NULL"}));
  // A row of unknown rowid goes under a new negative one.
  EXPECT_EQ(Lines(scratch.Get(), "SELECT rowid, id, note FROM handle ORDER BY rowid", 3),
            (std::vector<std::string>{"-1|NULL|NULL", "7|+4930|a note"}));
}

const LostRowsOf kLost{{"message"}, {}, false, "guid", {}, {"sync_deleted_messages"}};

std::vector<std::string> Layers(const RecoveredRows& rows, const std::string& query, int columns) {
  std::vector<std::string> layers;
  ForEachLostLayer(rows, kLost, [&](Database& database, const Deletion& deletion) {
    std::string layer = std::string(deletion.from) + ":";
    for (const std::string& line : Lines(database, query, columns)) layer += " [" + line + "]";
    layers.push_back(layer);
  });
  return layers;
}

TEST(LostRows, ARowFoundTwiceIsLaidOutOnceUnderItsRowid) {
  RecoveredRows rows = Tables();
  rows.rows.push_back(Row(0, 1, {Integer(1), Text("g1"), Text("live"), SqlValue()}, RowStatus::Live));
  rows.rows.push_back(Row(0, std::nullopt, {SqlValue(), Text("g2"), Text("gone"), SqlValue()}, RowStatus::Deleted));
  rows.rows.push_back(Row(0, 5, {Integer(5), Text("g2"), Text("gone"), SqlValue()}, RowStatus::Deleted));
  rows.rows.push_back(Row(0, 6, {Integer(6), Text("g3"), Text("gone too"), SqlValue()}, RowStatus::Deleted));
  EXPECT_EQ(Layers(rows, "SELECT ROWID, guid, text FROM message ORDER BY ROWID", 3),
            (std::vector<std::string>{"freeblock: [5|g2|gone] [6|g3|gone too]"}));
}

TEST(LostRows, ACopyWithoutRowidOfALiveRowIsNoLostRow) {
  RecoveredRows rows = Tables();
  rows.rows.push_back(Row(0, 1, {Integer(1), Text("g1"), Text("live"), SqlValue()}, RowStatus::Live));
  // Its cell moved: the old bytes keep the guid under other values.
  rows.rows.push_back(Row(0, std::nullopt, {SqlValue(), Text("g1"), Text("old"), SqlValue()}, RowStatus::Deleted));
  rows.rows.push_back(Row(0, std::nullopt, {SqlValue(), Text("g9"), Text("lost"), SqlValue()}, RowStatus::Deleted));
  EXPECT_EQ(Layers(rows, "SELECT guid, text FROM message ORDER BY guid", 2),
            (std::vector<std::string>{"freeblock: [g9|lost]"}));
}

TEST(LostRows, TheTablesTheReaderNeverReadsStayEmpty) {
  RecoveredRows rows = Tables();
  rows.rows.push_back(Row(1, 7, {Text("+4930"), Text("a note")}, RowStatus::Live));
  rows.rows.push_back(Row(2, 1, {Text("g2")}, RowStatus::Live));
  rows.rows.push_back(Row(2, 2, {Text("g0")}, RowStatus::Deleted));
  rows.rows.push_back(Row(0, 5, {Integer(5), Text("g2"), Text("gone"), SqlValue()}, RowStatus::Deleted));
  EXPECT_EQ(Layers(rows, "SELECT (SELECT count(*) FROM handle), (SELECT count(*) FROM sync_deleted_messages)", 2),
            (std::vector<std::string>{"freeblock: [1|0]"}));
}

}  // namespace
}  // namespace current
