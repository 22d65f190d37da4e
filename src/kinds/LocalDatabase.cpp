#include "kinds/LocalDatabase.h"

#include <fstream>

#include "common/FileHelpers.h"
#include "session/BackupSession.h"

namespace {

bool CopyFile(const std::string& from, const std::string& to) {
  if (!VQIsRegularFile(from.c_str())) return false;
  std::ifstream in(from, std::ios::binary);
  std::ofstream out(to, std::ios::binary | std::ios::trunc);
  if (!in || !out) return false;
  out << in.rdbuf();
  return static_cast<bool>(out.flush());
}

}  // namespace

LocalDatabase LocalDatabaseOf(const BackupDevice* device, const StoredFile& file) {
  const LocalDatabase asStored{file.path, Database::Access::Immutable};
  BackupSession* session = SessionOf(device);
  if (!session || !session->ReadsWal()) return asStored;
  const std::optional<StoredFile> wal = StoredFileIn(device, file.domain, file.relativePath + "-wal");
  if (!wal || VQGetFileSize(wal->path.c_str()) == 0) return asStored;
  const std::string folder = session->NewCopyFolder();
  if (folder.empty()) return asStored;
  const std::string copy = folder + "database";
  if (!CopyFile(file.path, copy) || !CopyFile(wal->path, copy + "-wal")) return asStored;
  return {copy, Database::Access::PrivateCopy};
}

Database OpenStoredDatabase(const BackupDevice* device, const StoredFile& file) {
  const LocalDatabase local = LocalDatabaseOf(device, file);
  return Database(local.path, local.access);
}
