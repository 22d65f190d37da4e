#ifndef YH_TESTS_SUPPORT_STOREDDATABASE_H
#define YH_TESTS_SUPPORT_STOREDDATABASE_H

#include <string>

#include "support/BackupBuilder.h"

namespace yhtest {

// The bytes of a database and of its -wal and -journal files.
struct StoredDatabase {
  std::string database;
  std::string wal;
  std::string journal;
};

// Runs `sql` on a fresh database with secure_delete off (Debian's SQLite
// deletes securely by default), then returns the files' bytes as they are
// while the connection is still open: closing it would checkpoint the -wal
// and remove it. The SQL sets the journal mode it wants; `reservedBytes`
// leaves that many bytes unused at the end of every page.
StoredDatabase BuildStoredDatabase(const std::string& sql, int reservedBytes = 0);

// A database built by BuildStoredDatabase, written with its -wal and
// -journal (those not empty) into a fresh folder, removed with it.
class StoredDatabaseFile {
 public:
  explicit StoredDatabaseFile(const std::string& sql);
  const std::string& Path() const { return path_; }
  const std::string& Folder() const { return folder_.Path(); }

 private:
  TempDir folder_;
  std::string path_;
};

}  // namespace yhtest

#endif
