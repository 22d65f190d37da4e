#include "index/Mbdb.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/BigEndianBitConverter.h"
#include "common/CivilTime.h"
#include "common/FileHelpers.h"
#include "common/TextHelpers.h"
#include "crypto/Sha1Name.h"
#include "index/StoredFileTests.h"
#include "platform/Folder.h"

namespace {

const unsigned char kSignature[] = {'m', 'b', 'd', 'b', 0x05, 0x00};
constexpr int kFixedBlockSize = 40;
// mode, inode (two halves), user, group, three times, size, protection, property count
const int kFixedBlockGroups[] = {2, 4, 4, 4, 4, 4, 4, 4, 8, 1, 1};

using FilePtr = std::unique_ptr<FILE, int (*)(FILE*)>;

// True when no byte is left; a byte looked at is put back.
bool AtEnd(FILE* file) {
  int c = std::getc(file);
  if (c == EOF) return true;
  std::ungetc(c, file);
  return false;
}

// Reads one length-prefixed value into a zero-filled buffer one byte longer
// than declared; a length of 0 or 0xFFFF leaves the buffer empty.
bool ReadValue(FILE* file, std::vector<unsigned char>* bytes) {
  bytes->clear();
  int high = std::getc(file);
  if (high == EOF) return false;
  int low = std::getc(file);
  if (low == EOF) return false;
  if (high == 0xFF && low == 0xFF) return true;
  size_t length = static_cast<size_t>(high) << 8 | static_cast<size_t>(low);
  if (length == 0) return true;
  bytes->assign(length + 1, 0);
  return std::fread(bytes->data(), 1, length, file) == length;
}

// Values are kept as C strings: an embedded zero byte ends them.
void AppendText(const std::vector<unsigned char>& bytes, std::string* out) {
  if (!bytes.empty()) out->append(reinterpret_cast<const char*>(bytes.data()));
}

// A value's bytes as read, without the buffer's closing zero.
bool ReadBytes(FILE* file, std::string* out) {
  std::vector<unsigned char> bytes;
  if (!ReadValue(file, &bytes)) return false;
  if (!bytes.empty()) out->assign(bytes.begin(), bytes.end() - 1);
  return true;
}

// A data value as text: itself when every byte is printable, which leaves
// no zero byte in it, otherwise upper-case hex.
std::string DataText(std::string_view bytes) {
  const bool printable =
      std::all_of(bytes.begin(), bytes.end(), [](char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value >= 32 && value <= 127;
  });
  if (printable) return std::string(bytes);
  std::string text;
  text.reserve(2 * bytes.size());
  for (const char byte : bytes) {
    text += Mbdb::toHex(static_cast<unsigned char>(byte) >> 4);
    text += Mbdb::toHex(byte);
  }
  return text;
}

struct tm BrokenDownUtc(uint32_t seconds) {
  struct tm fields {};
  UtcFields(seconds, &fields);
  return fields;
}

// One record's values as read, reused from record to record.
struct ReadValues {
  std::string domain;
  std::string path;
  std::string linkTarget;
  std::string dataHash;  // as stored
  std::string encryptionKey;  // as stored
  std::array<unsigned char, kFixedBlockSize> fixedBlock;
  std::unique_ptr<Mbdb::MBFileRecord::Property[]> properties;
};

// A record read, waiting for the test of its stored file: its domain, then
// the record's texts one after another (path, link target, data hash,
// encryption key); nothing of it is kept unless the file exists.
struct PendingRecord {
  std::string texts;
  size_t domainSize;
  Mbdb::MBFileRecord::Fields fields;
};

// One record without its stored name; false when the file ends or a read
// fails inside it.
bool ReadRecord(FILE* file, ReadValues* values) {
  values->domain.clear();
  values->path.clear();
  values->linkTarget.clear();
  values->dataHash.clear();
  values->encryptionKey.clear();
  values->properties.reset();
  if (!Mbdb::getS(file, &values->domain) || !Mbdb::getS(file, &values->path) ||
      !Mbdb::getS(file, &values->linkTarget) || !ReadBytes(file, &values->dataHash) ||
      !ReadBytes(file, &values->encryptionKey)) {
    return false;
  }
  if (std::fread(values->fixedBlock.data(), 1, kFixedBlockSize, file) != kFixedBlockSize) return false;
  const int propertyCount = values->fixedBlock[kFixedBlockSize - 1];
  if (propertyCount != 0) {
    values->properties = std::make_unique<Mbdb::MBFileRecord::Property[]>(propertyCount);
    for (int i = 0; i < propertyCount; ++i) {
      if (!Mbdb::getS(file, &values->properties[i].name) || !Mbdb::getD(file, &values->properties[i].value)) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace

MbdbRecord::MbdbRecord(Fields fields)
    : pathSize_(fields.pathSize),
      linkTargetSize_(fields.linkTargetSize),
      domain_(fields.domain),
      texts_(fields.texts),
      properties_(std::move(fields.properties)),
      storedSize_(fields.stored.size),
      dataHashSize_(fields.dataHashSize),
      encryptionKeySize_(fields.encryptionKeySize),
      fixedBlock_(fields.fixedBlock),
      storedRegular_(fields.stored.regular) {}

std::string Mbdb::MBFileRecord::dataHash() const {
  return DataText(Texts().substr(size_t{pathSize_} + linkTargetSize_, dataHashSize_));
}

std::string Mbdb::MBFileRecord::encryptionKey() const {
  return DataText(Texts().substr(size_t{pathSize_} + linkTargetSize_ + dataHashSize_));
}

std::string Mbdb::MBFileRecord::fixedBlockText() const {
  return Mbdb::toHex(fixedBlock_.data(), kFixedBlockSize, kFixedBlockGroups,
                     sizeof kFixedBlockGroups / sizeof kFixedBlockGroups[0]);
}

uint16_t Mbdb::MBFileRecord::mode() const { return BigEndianBitConverter::ToUInt16(fixedBlock_.data(), 0); }

int32_t Mbdb::MBFileRecord::inodeHigh() const { return BigEndianBitConverter::ToInt32(fixedBlock_.data(), 2); }

uint32_t Mbdb::MBFileRecord::inodeLow() const { return BigEndianBitConverter::ToUInt32(fixedBlock_.data(), 6); }

uint32_t Mbdb::MBFileRecord::userId() const { return BigEndianBitConverter::ToUInt32(fixedBlock_.data(), 10); }

uint32_t Mbdb::MBFileRecord::groupId() const { return BigEndianBitConverter::ToUInt32(fixedBlock_.data(), 14); }

struct tm Mbdb::MBFileRecord::modified() const {
  return BrokenDownUtc(BigEndianBitConverter::ToUInt32(fixedBlock_.data(), 18));
}

struct tm Mbdb::MBFileRecord::accessed() const {
  return BrokenDownUtc(BigEndianBitConverter::ToUInt32(fixedBlock_.data(), 22));
}

struct tm Mbdb::MBFileRecord::changed() const {
  return BrokenDownUtc(BigEndianBitConverter::ToUInt32(fixedBlock_.data(), 26));
}

int32_t Mbdb::MBFileRecord::size() const {
  return static_cast<int32_t>(static_cast<uint32_t>(BigEndianBitConverter::ToInt64(fixedBlock_.data(), 30)));
}

int32_t Mbdb::ReadMBDB(const char* path) {
  backupPath_ += path;
  const std::string index = std::string(path) + "Manifest.mbdb";
  // A named pipe would block the open until a writer came.
  if (!VQIsRegularFile(index.c_str())) return 0;
  FilePtr file(YHfopen(index.c_str(), "rb"), std::fclose);
  if (!file) return 0;
  unsigned char signature[sizeof kSignature];
  if (std::fread(signature, 1, sizeof signature, file.get()) != sizeof signature ||
      std::memcmp(signature, kSignature, sizeof kSignature) != 0) {
    return 0;
  }
  const Folder folder(backupPath_);
  StoredFileTests<PendingRecord> tests(folder, [this](PendingRecord pending, const Folder::Entry& stored) {
    const std::string_view texts = pending.texts;
    pending.fields.domain = domains_.Intern(texts.substr(0, pending.domainSize));
    pending.fields.texts = texts_.Add(texts.substr(pending.domainSize)).data();
    pending.fields.stored = stored;
    Keep(records_.Add(std::move(pending.fields)));
  }, GetTestThreads());
  ReadValues values;
  // A truncated or unreadable record ends the reading; what was kept stays.
  // A record whose stored file is absent (a folder, a file not copied) is
  // skipped and nothing of it is kept.
  while (!AtEnd(file.get()) && ReadRecord(file.get(), &values)) {
    PendingRecord pending{values.domain + values.path + values.linkTarget + values.dataHash + values.encryptionKey,
                          values.domain.size(),
                          {nullptr, nullptr, static_cast<uint16_t>(values.path.size()),
                           static_cast<uint16_t>(values.linkTarget.size()), static_cast<uint16_t>(values.dataHash.size()),
                           static_cast<uint16_t>(values.encryptionKey.size()), values.fixedBlock,
                           std::move(values.properties), {}}};
    tests.Add(std::move(pending), MbdbStoredName(values.domain, values.path));
  }
  tests.Finish();
  MapPaths();
  return 1;
}

char Mbdb::toHex(int value) { return "0123456789ABCDEF"[value & 0xF]; }

char Mbdb::toHexLow(int value) { return "0123456789abcdef"[value & 0xF]; }

int Mbdb::fromHex(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return 0;
}

std::string Mbdb::toHex(const unsigned char* data, int length, const int* groups, int groupCount) {
  std::string text;
  // Sized once: every record of a large index makes one of these texts.
  text.reserve(static_cast<size_t>(std::max(length, 0)) * 2 + static_cast<size_t>(std::max(groupCount, 0)));
  int group = 0;
  int groupEnd = groupCount > 0 ? groups[0] : length;
  for (int i = 0; i < length; ++i) {
    if (i == groupEnd && group + 1 < groupCount) {
      text += ' ';
      groupEnd += groups[++group];
    }
    text += toHex(data[i] >> 4);
    text += toHex(data[i]);
  }
  return text;
}

bool Mbdb::getS(FILE* file, std::string* out) {
  std::vector<unsigned char> bytes;
  if (!ReadValue(file, &bytes)) return false;
  AppendText(bytes, out);
  return true;
}

bool Mbdb::getD(FILE* file, std::string* out) {
  std::string bytes;
  if (!ReadBytes(file, &bytes)) return false;
  *out += DataText(bytes);
  return true;
}
