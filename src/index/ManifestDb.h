#ifndef YH_INDEX_MANIFESTDB_H
#define YH_INDEX_MANIFESTDB_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/HexName.h"
#include "platform/Folder.h"
#include "common/VqBase.h"
#include "index/RecordIndex.h"
#include "index/RecordStore.h"
#include "index/SharedTexts.h"
#include "index/StoredFileTests.h"
#include "index/TextArena.h"

// One record of a Manifest.db index.
class ManifestDbRecord : public VqBase {
 public:
  // The texts are pointed to, not copied, and must outlive the record;
  // `fileID` and `domain` end with a zero byte. A fileID of 40 lower-case
  // hex digits is kept as its 20 bytes instead.
  ManifestDbRecord(const char* fileID, const char* domain, std::string_view relativePath, int32_t flags,
               Folder::Entry stored);
  // The copy points to the same texts.
  ManifestDbRecord(const ManifestDbRecord& other) = default;
  ~ManifestDbRecord() override = default;

  std::string fileID() const { return packed_ ? HexNameOf(fileId_) : std::string(FileIdText()); }
  std::string_view relativePath() const { return {relativePath_, relativePathSize_}; }
  std::string_view domain() const { return domain_; }
  int32_t flags() const { return flags_; }
  // The stored file as found when the index was read: the media kinds
  // report its size without asking the file system again.
  Folder::Entry stored() const { return {storedSize_, storedRegular_}; }

 private:
  // A fileID that is not hex digits is pointed to, the pointer kept in the
  // bytes' place.
  const char* FileIdText() const;

  // Ordered so that a quarter of a million records waste no padding: flags
  // fill the end of the base, the bytes and the marks share the last word.
  int32_t flags_;
  const char* relativePath_;
  const char* domain_;
  uint64_t storedSize_;
  uint32_t relativePathSize_;
  HexNameBytes fileId_;
  bool packed_;
  bool storedRegular_;
};

// Reader of the SQLite index of newer backups: the Files table maps each
// fileID to a domain and a device-relative path; the stored file lies at
// backup folder + first two characters of fileID + "/" + fileID.
class ManifestDb : public RecordIndex<ManifestDbRecord, &ManifestDbRecord::relativePath> {
 public:
  using DBFileRecord = ManifestDbRecord;

  ManifestDb() = default;
  ~ManifestDb() override = default;

  // 1 when the Files table was read to the end, 0 otherwise. `path` is the
  // backup folder and must end in "/"; `index` is the database to read
  // (the folder's Manifest.db when empty, a decrypted copy otherwise).
  uint32_t ReadDb(const char* path, const std::string& index = std::string());

  BackupType Type() const override { return BackupType::ManifestDb; }
  std::string StoredNameAt(size_t position) const override {
    std::string name;
    return StoredName(RecordAt(position).fileID(), name);
  }

  // Sets `name` to where the stored file of a fileID lies below the backup
  // folder (its first two characters, "/", then the fileID) and returns it.
  static std::string& StoredName(std::string_view fileId, std::string& name);

  static int ManifestDbCallback(void* context, int columnCount, char** values, char** columnNames);

 private:
  // A row read, waiting for the test of its stored file.
  struct Row {
    std::string texts;  // the fileID, a zero byte, the domain, then the path
    uint32_t fileIdSize = 0;
    uint32_t domainSize = 0;
    int32_t flags = 0;
  };

  // What the row callback is given: the reader and the tests of its rows.
  struct Reading {
    ManifestDb* reader;
    StoredFileTests<Row>* tests;
  };

  // Makes the record of a row whose stored file exists.
  void Keep(Row row, const Folder::Entry& entry);

  std::string backupPath_;
  SharedTexts domains_;
  TextArena texts_;
  RecordStore<DBFileRecord> records_;
  std::string storedName_;  // the stored file of the row being read
};

#endif
