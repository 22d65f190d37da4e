#ifndef YH_INDEX_MBDB_H
#define YH_INDEX_MBDB_H

#include <array>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/HexName.h"
#include "platform/Folder.h"
#include "common/VqBase.h"
#include "crypto/Sha1Name.h"
#include "index/RecordIndex.h"
#include "index/RecordStore.h"
#include "index/SharedTexts.h"
#include "index/TextArena.h"

// One record of a Manifest.mbdb index.
class MbdbRecord : public VqBase {
 public:
  class Property : public VqBase {
   public:
    std::string name;
    std::string value;
  };

  // The values and the fixed block as read. `domain` (ending with a zero
  // byte) and `texts` (path, link target, then the data hash and the
  // encryption key as stored, one after another) lie in storage that
  // outlives the record. Every value's length has 16 bits in the index.
  struct Fields {
    const char* domain;
    const char* texts;
    uint16_t pathSize;
    uint16_t linkTargetSize;
    uint16_t dataHashSize;
    uint16_t encryptionKeySize;
    std::array<unsigned char, 40> fixedBlock;
    std::unique_ptr<Property[]> properties;
    Folder::Entry stored;
  };

  explicit MbdbRecord(Fields fields);

  // 40 lower-case hex digits. Worked out again at each call from the
  // domain and path it is made of (texts end at their first zero byte, so
  // both are as read): kept, it would take a sixth of the record, and only
  // the few files that media and databases name ask for it.
  std::string storedName() const { return MbdbStoredName(domain(), path()); }
  std::string_view domain() const { return domain_; }
  std::string_view path() const { return Texts().substr(0, pathSize_); }
  std::string_view linkTarget() const { return Texts().substr(pathSize_, linkTargetSize_); }
  // As getD gives them.
  std::string dataHash() const;
  std::string encryptionKey() const;
  // The fixed block as spaced upper-case hex, one group a field.
  std::string fixedBlockText() const;
  uint16_t mode() const;
  int32_t inodeHigh() const;
  uint32_t inodeLow() const;
  uint32_t userId() const;
  uint32_t groupId() const;
  // Broken down in UTC.
  struct tm modified() const;
  struct tm accessed() const;
  struct tm changed() const;
  int32_t size() const;  // low 32 bits of the stored 64-bit size, kept narrow on purpose
  uint8_t protectionClass() const { return fixedBlock_[38]; }
  uint8_t propertyCount() const { return fixedBlock_[39]; }
  const Property* properties() const { return properties_.get(); }
  // The stored file as found when the index was read: the media kinds
  // report its size without asking the file system again.
  Folder::Entry stored() const { return {storedSize_, storedRegular_}; }

 private:
  std::string_view Texts() const {
    return {texts_, size_t{pathSize_} + linkTargetSize_ + dataHashSize_ +
                               encryptionKeySize_};
  }

  // Ordered so that a quarter of a million records waste no padding: the
  // first two sizes fill the end of the base.
  uint16_t pathSize_;
  uint16_t linkTargetSize_;
  const char* domain_;
  const char* texts_;
  std::unique_ptr<Property[]> properties_;
  uint64_t storedSize_;
  uint16_t dataHashSize_;
  uint16_t encryptionKeySize_;
  std::array<unsigned char, 40> fixedBlock_;
  bool storedRegular_;
};

// Reader of the binary index of older backups. Stored files lie flat in the
// backup folder, named by the SHA-1 of domain + "-" + relative path.
class Mbdb : public RecordIndex<MbdbRecord, &MbdbRecord::path> {
 public:
  using MBFileRecord = MbdbRecord;

  Mbdb() = default;
  ~Mbdb() override = default;

  // 1 when the index opened with the right signature (also when its reading
  // stopped early), 0 otherwise. `path` is the backup folder, ending in "/".
  int32_t ReadMBDB(const char* path);

  std::string GetBackupPath() const { return backupPath_; }

  BackupType Type() const override { return BackupType::Mbdb; }
  std::string StoredNameAt(size_t position) const override { return RecordAt(position).storedName(); }

  static char toHex(int value);
  static char toHexLow(int value);
  static int fromHex(char c);
  static std::string toHex(const unsigned char* data, int length, const int* groups, int groupCount);

  static bool getS(FILE* file, std::string* out);
  static bool getD(FILE* file, std::string* out);

 private:
  std::string backupPath_;
  SharedTexts domains_;
  TextArena texts_;
  RecordStore<MBFileRecord> records_;
};

#endif
