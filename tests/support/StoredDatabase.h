#ifndef YH_TESTS_SUPPORT_STOREDDATABASE_H
#define YH_TESTS_SUPPORT_STOREDDATABASE_H

#include <string>

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

}  // namespace yhtest

#endif
