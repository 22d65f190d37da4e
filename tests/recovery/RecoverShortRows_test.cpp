#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "recovery/RecoverRows.h"
#include "support/StoredDatabase.h"

namespace {

// One row as "value|value|...", its values as SQL literals would print them.
using Line = std::vector<std::string>;

std::string Joined(const Line& line) {
  std::string text;
  for (const std::string& value : line) text += (text.empty() ? "" : "|") + value;
  return text;
}

std::string Text(const SqlValue& value) {
  switch (value.kind) {
    case SqlValue::Kind::Null:
      return "NULL";
    case SqlValue::Kind::Integer:
      return std::to_string(value.integer);
    case SqlValue::Kind::Real:
      return std::to_string(value.real);
    default:
      return "'" + value.bytes + "'";
  }
}

// A table of short rows, filled, then thinned by deletes.
struct ShortTable {
  std::string create;
  int alias;  // the rowid alias column, -1 when none
  int unique;  // a column whose value is unique to the row
  std::function<Line(int)> row;  // the values of row n (1 on), as literals
};

struct Outcome {
  size_t deleted = 0;  // whose values' bytes are still in the file
  size_t recovered = 0;  // deleted rows that came back with every value right
  std::vector<std::string> wrong;  // rows not live that no deleted row is
};

// Whether `carved` is `deleted`, the alias column aside when its rowid was lost.
bool SameRow(const Line& carved, const Line& deleted, int alias) {
  if (carved.size() != deleted.size()) return false;
  for (size_t i = 0; i < carved.size(); ++i) {
    if (static_cast<int>(i) == alias && carved[i] == "NULL") continue;
    if (carved[i] != deleted[i]) return false;
  }
  return true;
}

// Fills the table with `rows` rows, one insert each, then deletes those of `gone`
// in that order, one statement each.
Outcome Delete(const ShortTable& table, int rows, const std::vector<int>& gone) {
  std::string sql = "PRAGMA synchronous=OFF;" + table.create;
  for (int n = 1; n <= rows; ++n) sql += "INSERT INTO t VALUES (" + [&] {
    std::string values;
    for (const std::string& value : table.row(n)) values += (values.empty() ? "" : ",") + value;
    return values;
  }() + ");";
  for (int n : gone) sql += "DELETE FROM t WHERE rowid = " + std::to_string(n) + ";";
  const yhtest::StoredDatabase stored = yhtest::BuildStoredDatabase(sql);
  // A row whose page was rebuilt when pages were merged is gone: its
  // values' bytes (the texts, or the last integer as one byte) are not in the file.
  std::vector<Line> deleted;
  for (int n : gone) {
    const Line line = table.row(n);
    const std::string& last = line[table.unique];
    const std::string bytes = last[0] == '\'' ? last.substr(1, last.size() - 2) : std::string(1, static_cast<char>(std::stoi(last)));
    if (stored.database.find(bytes) != std::string::npos) deleted.push_back(line);
  }
  Outcome outcome;
  outcome.deleted = deleted.size();
  std::set<size_t> found;
  for (const RecoveredRow& row : RecoverRows(FileImage(stored.database), false).rows) {
    Line carved;
    for (const SqlValue& value : row.values) carved.push_back(Text(value));
    bool known = false;
    for (size_t d = 0; d < deleted.size(); ++d) {
      if (!SameRow(carved, deleted[d], table.alias)) continue;
      known = true;
      found.insert(d);
    }
    if (!known) outcome.wrong.push_back(Joined(carved));
  }
  outcome.recovered = found.size();
  return outcome;
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

const ShortTable kHandles{
    "CREATE TABLE t (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT, country TEXT, service TEXT);", 0, 1, [](int n) {
      const std::string id = n % 3 == 0 ? "user" + std::to_string(n) + "@example.com" : "+1555" + std::to_string(1000000 + n * 7);
      return Line{std::to_string(n), Quoted(id), Quoted(n % 4 == 0 ? "gb" : "us"),
                  Quoted(n % 2 == 0 ? "iMessage" : "SMS")};
    }};

const ShortTable kSmallIntegers{"CREATE TABLE t (a INTEGER, b INTEGER, c INTEGER);", -1, 2, [](int n) {
                                  return Line{std::to_string(n % 7), std::to_string(n % 3 + 2), std::to_string(n)};
                                }};

std::vector<int> Every(int step, int from, int to) {
  std::vector<int> numbers;
  for (int n = from; n <= to; n += step) numbers.push_back(n);
  return numbers;
}

// Rows of a join table, as a messages database links messages to chats:
// the rowid's varint takes one byte, then two.
const ShortTable kJoins{"CREATE TABLE t (chat_id INTEGER, message_id INTEGER, message_date INTEGER DEFAULT 0);", -1, 1,
                        [](int n) { return Line{"2", std::to_string(n), "0"}; }};

// At least `deleted` rows survived, each came back exactly but for the
// `lost` ones, and nothing else came back.
void ExpectBack(const Outcome& outcome, size_t deleted, size_t lost) {
  std::string wrong;
  for (const std::string& line : outcome.wrong) wrong += line + "\n";
  EXPECT_GE(outcome.deleted, deleted);
  EXPECT_EQ(outcome.recovered, outcome.deleted - lost);
  EXPECT_TRUE(wrong.empty()) << wrong;
}

TEST(RecoverShortRows, HandlesDeletedOneByOneComeBackExactly) {
  ExpectBack(Delete(kHandles, 300, Every(7, 3, 300)), 20, 0);
}

TEST(RecoverShortRows, HandlesDeletedInARunComeBackExactly) { ExpectBack(Delete(kHandles, 300, Every(1, 40, 60)), 21, 0); }

TEST(RecoverShortRows, SmallIntegersDeletedOneByOneComeBackExactly) {
  // Rowids of one and two bytes: the freeblock header took the first type
  // of some cells and not of others, in cells of the same length.
  ExpectBack(Delete(kSmallIntegers, 600, Every(7, 3, 600)), 86, 0);
}

TEST(RecoverShortRows, SmallIntegersDeletedInARunComeBackUnlessTheirFirstValueWasLost) {
  // A first value of NULL, 0 or 1 takes no byte: its overwritten type
  // cannot be told, and the row is not given (12 of the 41).
  ExpectBack(Delete(kSmallIntegers, 600, Every(1, 40, 80)), 41, 12);
}

TEST(RecoverShortRows, JoinRowsDeletedInARunAcrossTwoByteRowidsComeBackExactly) {
  ExpectBack(Delete(kJoins, 300, Every(1, 51, 250)), 200, 0);
}

}  // namespace
