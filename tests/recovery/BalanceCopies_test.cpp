#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "recovery/RecoverRows.h"
#include "support/StoredDatabase.h"

namespace {

// A row as its table's name and its values but for the rowid alias.
std::string Line(const RecoveredRows& recovered, const RecoveredRow& row) {
  const TableShape& table = recovered.tables[row.table];
  std::string line = table.name;
  for (size_t c = 0; c < row.values.size(); ++c) {
    if (static_cast<int>(c) == table.rowidColumn) continue;
    const SqlValue& value = row.values[c];
    line += "|";
    if (value.kind == SqlValue::Kind::Integer) line += std::to_string(value.integer);
    if (value.kind == SqlValue::Kind::Text || value.kind == SqlValue::Kind::Blob) line += value.bytes;
  }
  return line;
}

std::string Padding(int n) { return std::string(n % 60, static_cast<char>('a' + n % 26)); }
std::string TText(int n) { return "name " + std::to_string(n) + " " + Padding(n); }
const char kGrown[] = " grown longer than it was, so that its cell moves";
std::string TLine(int n, bool grown) {
  return "t|" + TText(n) + (grown ? kGrown : "") + "|" + std::to_string(7 * n) + "|" + std::to_string(1000 * n + 3);
}
// An entry of index t_ab (a, b, rowid) read as a row of t.
std::string TIndexLine(int n, bool grown) {
  return "t|" + TText(n) + (grown ? kGrown : "") + "|" + std::to_string(7 * n) + "|" + std::to_string(n);
}
std::string ULine(int n, bool grown) {
  return "u|key " + std::to_string(n) + "|body " + std::to_string(n) + " " + Padding(n * 7) + (grown ? kGrown : "");
}

// Every version each row had, by rowid: what a reported row may be.
std::multimap<int64_t, std::string> History() {
  std::multimap<int64_t, std::string> versions;
  for (int n = 1; n <= 3300; ++n) {
    versions.emplace(n, TLine(n, false));
    if (n % 10 == 0) versions.emplace(n, TLine(n, true));
  }
  for (int n = 1; n <= 1500; ++n) {
    versions.emplace(n, ULine(n, false));
    if (n % 8 == 1) versions.emplace(n, ULine(n, true));
  }
  return versions;
}

// Rows inserted, then deleted so that half-empty pages merge, updated so that
// cells move, and more inserted: b-tree balancing copies live cells to other
// pages and leaves the old bytes behind, in free space and on freelist pages.
std::string BalancedDatabase(const std::string& journal, const std::string& autoVacuum) {
  std::string sql = "PRAGMA auto_vacuum=" + autoVacuum + "; PRAGMA journal_mode=" + journal +
                    "; PRAGMA wal_autocheckpoint=0;"
                    "CREATE TABLE t (a TEXT, b INTEGER, c INTEGER); CREATE INDEX t_ab ON t (a, b);"
                    "CREATE TABLE u (id INTEGER PRIMARY KEY, key TEXT UNIQUE, body TEXT); BEGIN;";
  auto insertT = [&](int first, int last) {
    for (int n = first; n <= last; ++n) {
      sql += "INSERT INTO t (rowid, a, b, c) VALUES (" + std::to_string(n) + ", '" + TText(n) + "', " +
             std::to_string(7 * n) + ", " + std::to_string(1000 * n + 3) + ");";
    }
  };
  insertT(1, 3000);
  for (int n = 1; n <= 1500; ++n) {
    sql += "INSERT INTO u VALUES (" + std::to_string(n) + ", 'key " + std::to_string(n) + "', 'body " +
           std::to_string(n) + " " + Padding(n * 7) + "');";
  }
  sql += "COMMIT;";
  if (journal == "wal") sql += "PRAGMA wal_checkpoint(TRUNCATE);";
  sql += "DELETE FROM t WHERE rowid % 3 != 0 AND rowid BETWEEN 500 AND 2500;"
         "DELETE FROM u WHERE id % 4 != 1;"
         "UPDATE t SET a = a || '" + std::string(kGrown) + "' WHERE rowid % 10 = 0;"
         "UPDATE u SET body = body || '" + std::string(kGrown) + "' WHERE id % 8 = 1; BEGIN;";
  insertT(3001, 3300);
  return sql + "COMMIT;";
}

TEST(BalanceCopies, NoCopyOfALiveCellNorOfAnIndexEntryIsReported) {
  const std::multimap<int64_t, std::string> history = History();
  std::set<std::string> indexLines;
  for (int n = 1; n <= 3300; ++n) indexLines.insert({TIndexLine(n, false), TIndexLine(n, true)});
  for (const auto& [journal, autoVacuum] : std::initializer_list<std::pair<std::string, std::string>>{
           {"delete", "none"}, {"delete", "full"}, {"persist", "incremental"}, {"wal", "none"}, {"wal", "full"}}) {
    SCOPED_TRACE(journal + "/" + autoVacuum);
    const yhtest::StoredDatabase stored = yhtest::BuildStoredDatabase(BalancedDatabase(journal, autoVacuum));
    const RecoveredRows recovered = RecoverRows(FileImage(stored.database, stored.wal, stored.journal), true);
    std::set<std::pair<int64_t, std::string>> live;
    std::set<std::string> liveLines;
    for (const RecoveredRow& row : recovered.rows) {
      if (row.status != RowStatus::Live) continue;
      live.emplace(*row.rowid, Line(recovered, row));
      liveLines.insert(Line(recovered, row));
    }
    ASSERT_EQ(live.size(), 3300u - 1334u + 375u);
    size_t reported = 0;
    size_t unknown = 0;
    for (const RecoveredRow& row : recovered.rows) {
      if (row.status == RowStatus::Live) continue;
      ++reported;
      const std::string line = Line(recovered, row);
      // A copy of a live row: its values, its rowid or none.
      EXPECT_FALSE(row.rowid ? live.count({*row.rowid, line}) != 0 : liveLines.count(line) != 0) << line;
      EXPECT_EQ(indexLines.count(line), 0u) << RowSourceName(row.source) << " " << line;
      // Else a version the row had.
      const auto [first, last] = row.rowid ? history.equal_range(*row.rowid) : std::make_pair(history.begin(), history.end());
      bool had = false;
      for (auto version = first; version != last && !had; ++version) had = version->second == line;
      if (!had) std::cout << journal << "/" << autoVacuum << ": in no version: " << RowSourceName(row.source) << " " << line << "\n";
      unknown += !had;
    }
    std::cout << journal << "/" << autoVacuum << ": " << reported << " rows reported, " << unknown << " in no version\n";
    // Auto-vacuum in a rollback mode leaves no freed page.
    EXPECT_GT(reported, 50u);
    // Cells of which a part was overwritten and the rest reads as a record:
    // the tail of one (a text's last byte, an integer's bytes), or the start
    // of a short block read with the first four bytes it would have lost.
    EXPECT_LE(unknown, 3u);
  }
}

}  // namespace
