#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "service/Extractors.h"
#include "service/ServiceOperations.h"

namespace {

// One entry per kind of backup index: how to make its reader and read it.
struct IndexReaderType {
  int32_t backupType;
  VqBase* (*create)();
  int32_t (*read)(VqBase* reader, const char* backupPath);
};

const IndexReaderType kIndexReaders[] = {
    {0, [] { return static_cast<VqBase*>(new Mbdb()); },
     [](VqBase* reader, const char* path) { return static_cast<Mbdb*>(reader)->ReadMBDB(path); }},
    {1, [] { return static_cast<VqBase*>(new ManifestDb()); },
     [](VqBase* reader, const char* path) {
       return static_cast<int32_t>(static_cast<ManifestDb*>(reader)->ReadDb(path));
     }},
};

}  // namespace

// The extractors are made before the index is read, so they exist (and answer
// with nothing) even when the index cannot be read. Design decision for a
// second call on the same record: the earlier reader and extractors are
// released first, so the record is analysed afresh without leaking.
int32_t AnalyzeBackup(BackupDevice* device) {
  for (const IndexReaderType& type : kIndexReaders) {
    if (type.backupType != device->backupType) continue;
    delete device->indexReader;
    for (ExtractorField field : kExtractorFields) delete field(device);
    device->indexReader = type.create();
    CreateKindObj(device);
    return type.read(device->indexReader, device->backupPath);
  }
  return device->backupType;
}
