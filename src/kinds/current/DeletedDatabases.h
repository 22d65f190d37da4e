#ifndef YH_KINDS_CURRENT_DELETEDDATABASES_H
#define YH_KINDS_CURRENT_DELETEDDATABASES_H

#include <utility>
#include <vector>

#include "common/Database.h"
#include "kinds/StoredFiles.h"
#include "kinds/current/Deletion.h"
#include "kinds/current/LostRows.h"
#include "kinds/current/StoredDatabases.h"
#include "libYH.h"

namespace current {

// The records `reader` (the one that reads the kind's live records) makes
// of each layer of `lost` rows of every one of `files`, in file order, each
// marked with its layer's deletion. Reading the records from rows laid out
// as the database had them keeps every rule of the kind's live answer.
template <class Reader>
auto ReadDeletedDatabases(const BackupDevice* device, const std::vector<StoredFile>& files, const LostRowsOf& lost,
                          Reader reader) {
  using Records = decltype(reader(std::declval<Database&>()));
  std::vector<Deleted<typename Records::value_type>> deleted;
  for (const StoredFile& file : files) {
    ForEachLostLayer(device, file, lost, [&](Database& database, const Deletion& deletion) {
      for (auto& record : reader(database)) deleted.push_back({std::move(record), deletion});
    });
  }
  return deleted;
}

// Records the system keeps after a deletion, read by `reader` from every
// one of `files` as live records are, marked recently deleted.
template <class Reader>
auto ReadRecentlyDeleted(const BackupDevice* device, const std::vector<StoredFile>& files, Reader reader) {
  auto records = ReadStoredDatabases(device, files, std::move(reader));
  std::vector<Deleted<typename decltype(records)::value_type>> deleted;
  for (auto& record : records) deleted.push_back({std::move(record), Deletion{kRecentlyDeleted, "", false}});
  return deleted;
}

}  // namespace current

#endif
