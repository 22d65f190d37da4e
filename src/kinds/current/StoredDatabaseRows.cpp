#include "kinds/current/StoredDatabaseRows.h"

#include <optional>
#include <string>

#include "common/FileHelpers.h"
#include "recovery/FileImage.h"
#include "recovery/RecoverRows.h"

namespace current {
namespace {

// The bytes of the file the index lists at the database's path plus
// `suffix`, "" when there is none.
std::string BesideBytes(const BackupDevice* device, const StoredFile& file, const char* suffix) {
  const std::optional<StoredFile> log = StoredFileIn(device, file.domain, file.relativePath + suffix);
  if (!log || log->path.empty()) return "";
  return ReadRegularFile(log->path).value_or("");
}

}  // namespace

RecoveredRows RecoverStoredDatabase(const BackupDevice* device, const StoredFile& file) {
  const std::string database = file.path.empty() ? "" : ReadRegularFile(file.path).value_or("");
  const std::string wal = BesideBytes(device, file, "-wal");
  const std::string journal = BesideBytes(device, file, "-journal");
  return RecoverRows(FileImage(database, wal, journal));
}

}  // namespace current
