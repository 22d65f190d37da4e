#include "crypto/EncryptedBackup.h"
#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "service/Analysis.h"
#include "service/Extractors.h"
#include "service/ServiceOperations.h"

namespace {

// One entry per kind of backup index: how to make its reader and read it,
// an unlocked encrypted backup's Manifest.db from its decrypted copy.
struct IndexReaderType {
  BackupType backupType;
  IndexReader* (*create)();
  int32_t (*read)(IndexReader* reader, const char* backupPath, BackupSession& session);
};

const IndexReaderType kIndexReaders[] = {
    {BackupType::Mbdb, [] { return static_cast<IndexReader*>(new Mbdb()); },
     [](IndexReader* reader, const char* path, BackupSession&) { return static_cast<Mbdb*>(reader)->ReadMBDB(path); }},
    {BackupType::ManifestDb, [] { return static_cast<IndexReader*>(new ManifestDb()); },
     [](IndexReader* reader, const char* path, BackupSession& session) {
       EncryptedBackup* encrypted = session.Encrypted();
       return static_cast<int32_t>(
           static_cast<ManifestDb*>(reader)->ReadDb(path, encrypted ? encrypted->ManifestDbCopy() : std::string()));
     }},
};

const IndexReaderType* ReaderTypeOf(std::optional<BackupType> backupType) {
  for (const IndexReaderType& type : kIndexReaders) {
    if (type.backupType == backupType) return &type;
  }
  return nullptr;
}

}  // namespace

// The extractors are made before the index is read, so they exist (and answer
// with nothing) even when the index cannot be read. Design decision for a
// second call on the same record: the earlier reader and extractors are
// released first, so the record is analysed afresh without leaking.
int32_t AnalyzeBackupWith(BackupDevice* device, PrepareSession prepare) {
  const IndexReaderType* type = ReaderTypeOf(BackupTypeOf(device));
  if (!type) return device->backupType;
  BackupSession& session = SessionFor(device);
  session.currentKinds.reset();
  for (ExtractorField field : kExtractorFields) delete field(device);
  session.SetReader(std::unique_ptr<IndexReader>(type->create()));
  CreateKindObj(device);
  prepare(device, session);
  return type->read(session.Reader(), device->backupPath, session);
}

// Hosts of this service were promised a library that starts no threads.
int32_t AnalyzeBackup(BackupDevice* device) {
  return AnalyzeBackupWith(device, [](BackupDevice*, BackupSession& session) {
    session.SetReadsWal(false);
    session.Reader()->SetTestThreads(TestThreads::CallerOnly);
  });
}
