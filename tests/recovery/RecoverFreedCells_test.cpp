#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "recovery/RecoverRows.h"
#include "support/StoredDatabase.h"

namespace {

// Ids of 1 to 4 bytes: the intact cells' first types are no sure hint.
int64_t Id(int n) { return n % 4 == 0 ? n : n % 4 == 1 ? n * 1000 : n % 4 == 2 ? n * 100000 : n * 100000000LL; }

// Rows "id|name|real" that are not live.
std::vector<std::string> DeletedLines(const std::string& sql) {
  const yhtest::StoredDatabase stored = yhtest::BuildStoredDatabase(sql);
  std::vector<std::string> lines;
  for (const RecoveredRow& row : RecoverRows(FileImage(stored.database), false).rows) {
    lines.push_back(std::to_string(row.values[0].integer) + "|" + row.values[1].bytes + "|" +
                    std::to_string(row.values[2].real));
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::string Rows(int first, int last) {
  std::string sql;
  for (int id = first; id <= last; ++id) {
    sql += "INSERT INTO t VALUES (" + std::to_string(Id(id)) + ", 'name " + std::to_string(id) + "', " +
           std::to_string(id) + ".25);";
  }
  return sql;
}

std::vector<std::string> Lines(const std::vector<int>& ids) {
  std::vector<std::string> lines;
  for (int id : ids) lines.push_back(std::to_string(Id(id)) + "|name " + std::to_string(id) + "|" + std::to_string(id + 0.25));
  std::sort(lines.begin(), lines.end());
  return lines;
}

TEST(RecoverFreedCells, BringsBackEveryCellOfAPageEmptiedInAnyOrder) {
  // Each cell freed next to a free block joins it; the block's first cell
  // lost its first bytes and no intact cell tells its first type.
  std::string sql = "CREATE TABLE t (id INT, name TEXT, score REAL);" + Rows(1, 10);
  for (int id : {4, 7, 8, 3, 1, 6, 2, 5, 9, 10}) sql += "DELETE FROM t WHERE id = " + std::to_string(Id(id)) + ";";
  EXPECT_EQ(DeletedLines(sql), Lines({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(RecoverFreedCells, BringsBackCellsThatMergedIntoOneFreeblock) {
  std::string sql = "CREATE TABLE t (id INT, name TEXT, score REAL);" + Rows(1, 12);
  for (int id : {6, 5, 7, 9, 8}) sql += "DELETE FROM t WHERE id = " + std::to_string(Id(id)) + ";";
  EXPECT_EQ(DeletedLines(sql), Lines({5, 6, 7, 8, 9}));
}

}  // namespace
