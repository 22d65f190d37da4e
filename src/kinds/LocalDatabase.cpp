#include "kinds/LocalDatabase.h"

#include "common/FileHelpers.h"
#include "crypto/AtomicFile.h"
#include "session/BackupSession.h"

LocalDatabase LocalDatabaseOf(const BackupDevice* device, const StoredFile& file) {
  const LocalDatabase asStored{file.path, Database::Access::Immutable};
  BackupSession* session = SessionOf(device);
  if (!session || !session->ReadsWal()) return asStored;
  const std::optional<StoredFile> wal = StoredFileIn(device, file.domain, file.relativePath + "-wal");
  if (!wal || VQGetFileSize(wal->path.c_str()) == 0) return asStored;
  const std::string folder = session->NewCopyFolder();
  if (folder.empty()) return asStored;
  const std::string copy = folder + "database";
  if (!CopyAtomically(file.path, copy) || !CopyAtomically(wal->path, copy + "-wal")) return asStored;
  return {copy, Database::Access::PrivateCopy};
}

Database OpenStoredDatabase(const BackupDevice* device, const StoredFile& file) {
  const LocalDatabase local = LocalDatabaseOf(device, file);
  return Database(local.path, local.access);
}
