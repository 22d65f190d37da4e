#include "kinds/current/StoredDatabaseRows.h"

#include <memory>
#include <optional>
#include <string>

#include "recovery/ByteSource.h"
#include "recovery/FileBytes.h"
#include "recovery/FileImage.h"

namespace current {
namespace {

// The stored file at `path`, read page by page; no bytes when the backup
// lacks it.
std::unique_ptr<ByteSource> StoredBytes(const std::string& path) {
  if (path.empty()) return std::make_unique<MemoryBytes>("");
  return std::make_unique<FileBytes>(path);
}

// The file the index lists at the database's path plus `suffix`.
std::unique_ptr<ByteSource> BesideBytes(const BackupDevice* device, const StoredFile& file, const char* suffix) {
  const std::optional<StoredFile> log = StoredFileIn(device, file.domain, file.relativePath + suffix);
  return StoredBytes(log ? log->path : std::string());
}

}  // namespace

RecoveredRows RecoverStoredDatabase(const BackupDevice* device, const StoredFile& file, const LiveValues& liveValues) {
  const FileImage image(StoredBytes(file.path), BesideBytes(device, file, "-wal"), BesideBytes(device, file, "-journal"));
  return RecoverRows(image, true, liveValues);
}

}  // namespace current
