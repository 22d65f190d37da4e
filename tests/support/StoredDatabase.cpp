#include "support/StoredDatabase.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "support/BackupBuilder.h"

namespace yhtest {

StoredDatabase BuildStoredDatabase(const std::string& sql, int reservedBytes) {
  TempDir folder;
  const std::string path = folder.Path() + "stored.db";
  sqlite3* db = nullptr;
  StoredDatabase stored;
  if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) {
    ADD_FAILURE() << "cannot create " << path;
    sqlite3_close(db);
    return stored;
  }
  if (reservedBytes != 0) sqlite3_file_control(db, "main", SQLITE_FCNTL_RESERVE_BYTES, &reservedBytes);
  char* error = nullptr;
  const std::string script = "PRAGMA secure_delete=OFF;" + sql;
  if (sqlite3_exec(db, script.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
    ADD_FAILURE() << "fixture SQL failed: " << (error ? error : "");
  }
  sqlite3_free(error);
  stored = {ReadBytes(path), ReadBytes(path + "-wal"), ReadBytes(path + "-journal")};
  sqlite3_close(db);
  return stored;
}

StoredDatabaseFile::StoredDatabaseFile(const std::string& sql) : path_(folder_.Path() + "stored.db") {
  const StoredDatabase stored = BuildStoredDatabase(sql);
  WriteFile(path_, stored.database);
  if (!stored.wal.empty()) WriteFile(path_ + "-wal", stored.wal);
  if (!stored.journal.empty()) WriteFile(path_ + "-journal", stored.journal);
}

}  // namespace yhtest
