#ifndef YH_KINDS_LOCALDATABASE_H
#define YH_KINDS_LOCALDATABASE_H

#include <string>

#include "common/Database.h"
#include "kinds/StoredFiles.h"
#include "libYH.h"

// Where a stored database can be read, and how.
struct LocalDatabase {
  std::string path;
  Database::Access access = Database::Access::Immutable;
};

// The stored file itself, unless the record's session reads -wal files and
// the index lists one for this database (same domain, the database's path
// followed by "-wal"): then a private copy of both, made once per call, in
// the session's private folder, so that SQLite replays the log on the copy
// and the backup stays untouched. When no copy can be made, the stored file
// alone is read.
LocalDatabase LocalDatabaseOf(const BackupDevice* device, const StoredFile& file);

// The stored database opened where LocalDatabaseOf says, as it says: what a
// kind reads each of its databases through.
Database OpenStoredDatabase(const BackupDevice* device, const StoredFile& file);

#endif
