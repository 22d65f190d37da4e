#ifndef YH_KINDS_CURRENT_STOREDDATABASES_H
#define YH_KINDS_CURRENT_STOREDDATABASES_H

#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/AppendMoving.h"
#include "common/Database.h"
#include "kinds/LocalDatabase.h"
#include "kinds/StoredFiles.h"
#include "libYH.h"

namespace current {

// The records `reader` makes of one opened database: reader(database,
// file) for a reader that needs to know where the database lies (to find
// files beside it), reader(database) for any other.
template <class Reader>
auto ReadStoredDatabase(Reader& reader, Database& database, const StoredFile& file) {
  if constexpr (std::is_invocable_v<Reader&, Database&, const StoredFile&>) {
    return reader(database, file);
  } else {
    return reader(database);
  }
}

// The records of every one of `files`, in file order, each file opened
// through OpenStoredDatabase (its -wal and decryption seam) and closed once
// read. `reader` gives a vector of records for one database.
template <class Reader>
auto ReadStoredDatabases(const BackupDevice* device, const std::vector<StoredFile>& files, Reader reader) {
  decltype(ReadStoredDatabase(reader, std::declval<Database&>(), std::declval<const StoredFile&>())) records;
  for (const StoredFile& file : files) {
    Database database = OpenStoredDatabase(device, file);
    AppendMoving(records, ReadStoredDatabase(reader, database, file));
  }
  return records;
}

// The same for a file the index may lack.
template <class Reader>
auto ReadStoredDatabases(const BackupDevice* device, const std::optional<StoredFile>& file, Reader reader) {
  return ReadStoredDatabases(device, file ? std::vector<StoredFile>{*file} : std::vector<StoredFile>(),
                             std::move(reader));
}

}  // namespace current

#endif
