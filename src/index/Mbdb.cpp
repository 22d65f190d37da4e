#include "index/Mbdb.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "common/BigEndianBitConverter.h"
#include "common/FileHelpers.h"
#include "common/Folder.h"
#include "common/TextHelpers.h"
#include "index/Sha1Name.h"

namespace {

const unsigned char kSignature[] = {'m', 'b', 'd', 'b', 0x05, 0x00};
constexpr int kFixedBlockSize = 40;
// mode, inode (two halves), user, group, three times, size, protection, property count
const int kFixedBlockGroups[] = {2, 4, 4, 4, 4, 4, 4, 4, 8, 1, 1};

using FilePtr = std::unique_ptr<FILE, int (*)(FILE*)>;
using RecordPtr = std::unique_ptr<Mbdb::MBFileRecord>;

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

struct tm BrokenDownUtc(uint32_t seconds) {
  time_t time = seconds;
  struct tm fields {};
  gmtime_r(&time, &fields);
  return fields;
}

void DecodeFixedBlock(const unsigned char* block, Mbdb::MBFileRecord* record) {
  record->fixedBlockText =
      Mbdb::toHex(block, kFixedBlockSize, kFixedBlockGroups, sizeof kFixedBlockGroups / sizeof kFixedBlockGroups[0]);
  record->mode = BigEndianBitConverter::ToUInt16(block, 0);
  record->inodeHigh = BigEndianBitConverter::ToInt32(block, 2);
  record->inodeLow = BigEndianBitConverter::ToUInt32(block, 6);
  record->userId = BigEndianBitConverter::ToUInt32(block, 10);
  record->groupId = BigEndianBitConverter::ToUInt32(block, 14);
  record->modified = BrokenDownUtc(BigEndianBitConverter::ToUInt32(block, 18));
  record->accessed = BrokenDownUtc(BigEndianBitConverter::ToUInt32(block, 22));
  record->changed = BrokenDownUtc(BigEndianBitConverter::ToUInt32(block, 26));
  // Sizes are kept to their low 32 bits on purpose.
  record->size = static_cast<int32_t>(static_cast<uint32_t>(BigEndianBitConverter::ToInt64(block, 30)));
  record->protectionClass = block[38];
  record->propertyCount = block[39];
}

// One record without its stored name, or NULL when the file ends or a read
// fails inside it; the partial record is destroyed on the way out.
RecordPtr ReadRecord(FILE* file) {
  RecordPtr record = std::make_unique<Mbdb::MBFileRecord>();
  if (!Mbdb::getS(file, &record->domain) || !Mbdb::getS(file, &record->path) ||
      !Mbdb::getS(file, &record->linkTarget) || !Mbdb::getD(file, &record->dataHash) ||
      !Mbdb::getD(file, &record->encryptionKey)) {
    return nullptr;
  }
  unsigned char block[kFixedBlockSize];
  if (std::fread(block, 1, kFixedBlockSize, file) != kFixedBlockSize) return nullptr;
  DecodeFixedBlock(block, record.get());
  if (record->propertyCount != 0) {
    record->properties = new Mbdb::MBFileRecord::Property[record->propertyCount];
    for (int i = 0; i < record->propertyCount; ++i) {
      if (!Mbdb::getS(file, &record->properties[i].name) || !Mbdb::getD(file, &record->properties[i].value)) {
        return nullptr;
      }
    }
  }
  return record;
}

}  // namespace

// Covers records destroyed part-read; a kept record's properties are
// released by the reader before the record itself.
Mbdb::MBFileRecord::~MBFileRecord() { delete[] properties; }

Mbdb::~Mbdb() {
  for (MBFileRecord* record : contentList_) {
    delete[] record->properties;
    record->properties = nullptr;
    delete record;
  }
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
  while (!AtEnd(file.get())) {
    // A truncated or unreadable record ends the reading; what was kept stays.
    RecordPtr record = ReadRecord(file.get());
    if (!record) break;
    record->storedName = MbdbStoredName(record->domain, record->path);
    if (folder.Has(record->storedName, &record->stored)) {
      Keep(record.release());
    } else {
      // Deliberate: a record whose stored file is absent is neither kept nor
      // destroyed. Its memory stays allocated and unreferenced.
      record.release();
    }
  }
  MapPaths();
  return 1;
}

// Once, sized for every kept record: grown record by record, a map of a
// quarter of a million paths is rehashed over and over. A later record of
// the same path takes its place, as it would have row by row.
void Mbdb::MapPaths() {
  pathMap_.reserve(contentList_.size());
  for (MBFileRecord* record : contentList_) pathMap_[record->path] = record;
}

const PathIndex& Mbdb::GetPathIndex() {
  if (!pathIndex_) pathIndex_ = IndexPathsOf(contentList_, &MBFileRecord::path);
  return *pathIndex_;
}

void Mbdb::Keep(MBFileRecord* record) {
  contentList_.push_back(record);
  if (KeyList* keys = KeyListFor(record->path)) keys->push_back(record->storedName);
}

Mbdb::KeyList* Mbdb::KeyListFor(const std::string& path) {
  // Compared in this order; the first match wins.
  static const std::pair<const char*, KeyList Mbdb::*> kKnownPaths[] = {
      {"Library/SMS/sms.db", &Mbdb::smsKey_},
      {"Library/Safari/History.plist", &Mbdb::safariHistoryKey_},
      {"Library/Safari/Bookmarks.db", &Mbdb::safariBookmarkKey_},
      {"Media/Recordings/Recordings.db", &Mbdb::recordingKey_},
      {"Media/PhotoData/Photos.sqlite", &Mbdb::photoKey_},
      {"Library/Notes/notes.sqlite", &Mbdb::noteKey_},
      {"NoteStore.sqlite", &Mbdb::noteStoreKey_},
      {"Library/AddressBook/AddressBook.sqlitedb", &Mbdb::contactKey_},
      {"Library/CallHistory/call_history.db", &Mbdb::callKey_},
      {"Library/CallHistoryDB/CallHistory.storedata", &Mbdb::callStoreKey_},
      {"Library/Calendar/Calendar.sqlitedb", &Mbdb::calendarKey_},
  };
  for (const auto& [known, list] : kKnownPaths) {
    if (path == known) return &(this->*list);
  }
  return nullptr;
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
  std::vector<unsigned char> bytes;
  if (!ReadValue(file, &bytes)) return false;
  const size_t length = bytes.empty() ? 0 : bytes.size() - 1;
  const bool printable =
      std::all_of(bytes.begin(), bytes.begin() + length, [](unsigned char byte) { return byte >= 32 && byte <= 127; });
  if (printable) {
    AppendText(bytes, out);
    return true;
  }
  for (size_t i = 0; i < length; ++i) {
    *out += toHex(bytes[i] >> 4);
    *out += toHex(bytes[i]);
  }
  return true;
}
