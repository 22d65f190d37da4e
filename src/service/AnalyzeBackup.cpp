#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "service/Analysis.h"
#include "service/Extractors.h"
#include "service/ServiceOperations.h"

namespace {

// One entry per kind of backup index: how to make its reader and read it.
struct IndexReaderType {
  BackupType backupType;
  IndexReader* (*create)();
  int32_t (*read)(IndexReader* reader, const char* backupPath);
};

const IndexReaderType kIndexReaders[] = {
    {BackupType::Mbdb, [] { return static_cast<IndexReader*>(new Mbdb()); },
     [](IndexReader* reader, const char* path) { return static_cast<Mbdb*>(reader)->ReadMBDB(path); }},
    {BackupType::ManifestDb, [] { return static_cast<IndexReader*>(new ManifestDb()); },
     [](IndexReader* reader, const char* path) {
       return static_cast<int32_t>(static_cast<ManifestDb*>(reader)->ReadDb(path));
     }},
};

const IndexReaderType* ReaderTypeOf(std::optional<BackupType> backupType) {
  for (const IndexReaderType& type : kIndexReaders) {
    if (type.backupType == backupType) return &type;
  }
  return nullptr;
}

}  // namespace

IndexReader* NewIndexReader(BackupType backupType) {
  const IndexReaderType* type = ReaderTypeOf(backupType);
  return type ? type->create() : nullptr;
}

// The extractors are made before the index is read, so they exist (and answer
// with nothing) even when the index cannot be read. Design decision for a
// second call on the same record: the earlier reader and extractors are
// released first, so the record is analysed afresh without leaking.
int32_t AnalyzeBackupWith(BackupDevice* device, PrepareSession prepare) {
  const IndexReaderType* type = ReaderTypeOf(BackupTypeOf(device));
  if (!type) return device->backupType;
  IndexReader* earlier = ReaderOf(device);
  std::unique_ptr<BackupSession> session = earlier ? earlier->TakeSession() : nullptr;
  delete device->indexReader;
  for (ExtractorField field : kExtractorFields) delete field(device);
  IndexReader* reader = type->create();
  device->indexReader = reader;
  if (session) {
    session->currentKinds.reset();
    reader->AdoptSession(std::move(session));
  }
  CreateKindObj(device);
  prepare(device, reader->Session());
  return type->read(reader, device->backupPath);
}

int32_t AnalyzeBackup(BackupDevice* device) {
  return AnalyzeBackupWith(device, [](BackupDevice*, BackupSession& session) { session.SetReadsWal(false); });
}
