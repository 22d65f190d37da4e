#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <map>
#include <string>

#include "recovery/FileImage.h"
#include "recovery/RecoverRows.h"
#include "support/BackupBuilder.h"

namespace {

namespace fs = std::filesystem;

// Rows SQLite counts in a table, opened immutable; -1 when it cannot.
int64_t SqliteCount(const std::string& path, const std::string& table) {
  sqlite3* db = nullptr;
  int64_t count = -1;
  const std::string uri = "file:" + path + "?immutable=1";
  if (sqlite3_open_v2(uri.c_str(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr) == SQLITE_OK) {
    sqlite3_stmt* statement = nullptr;
    const std::string sql = "SELECT count(*) FROM \"" + table + "\"";
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW) {
      count = sqlite3_column_int64(statement, 0);
    }
    sqlite3_finalize(statement);
  }
  sqlite3_close(db);
  return count;
}

TEST(RealDatabases, LiveRowsOfEveryTableAreTheRowsSqliteReads) {
  const fs::path folder = YH_REALWORLD_DIR;
  if (!fs::is_directory(folder)) GTEST_SKIP() << "no real device backups in " << folder;
  int databases = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    const std::string bytes = yhtest::ReadBytes(entry.path().string());
    if (bytes.compare(0, 16, std::string("SQLite format 3\0", 16)) != 0) continue;
    ++databases;
    const RecoveredRows recovered = RecoverRows(FileImage(bytes), true);
    std::map<size_t, int64_t> live;
    for (const RecoveredRow& row : recovered.rows) live[row.table] += row.status == RowStatus::Live;
    for (size_t table = 0; table < recovered.tables.size(); ++table) {
      if (recovered.tables[table].withoutRowid || recovered.tables[table].dropped) continue;
      EXPECT_EQ(live[table], SqliteCount(entry.path().string(), recovered.tables[table].name))
          << entry.path() << " table " << recovered.tables[table].name;
    }
  }
  EXPECT_GT(databases, 10);
}

}  // namespace
