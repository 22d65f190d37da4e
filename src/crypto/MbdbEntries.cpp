#include "crypto/MbdbEntries.h"

namespace {

constexpr size_t kFixedBlockSize = 40;
constexpr size_t kSizeOffset = 30;
const std::string_view kSignature("mbdb\x05\x00", 6);

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}
  bool AtEnd() const { return offset_ == bytes_.size(); }

  // One length-prefixed value; 0xFFFF stands for empty.
  bool Value(std::string* raw, std::string* value) {
    if (bytes_.size() - offset_ < 2) return false;
    const size_t length = static_cast<unsigned char>(bytes_[offset_]) << 8 | static_cast<unsigned char>(bytes_[offset_ + 1]);
    const size_t size = length == 0xFFFF ? 0 : length;
    if (bytes_.size() - offset_ - 2 < size) return false;
    if (raw) raw->append(bytes_.substr(offset_, 2 + size));
    if (value) value->assign(bytes_.substr(offset_ + 2, size));
    offset_ += 2 + size;
    return true;
  }

  bool Fixed(size_t size, std::string* out) {
    if (bytes_.size() - offset_ < size) return false;
    out->assign(bytes_.substr(offset_, size));
    offset_ += size;
    return true;
  }

 private:
  std::string_view bytes_;
  size_t offset_ = 0;
};

bool ReadEntry(Reader* reader, MbdbEntry* entry) {
  std::string ignored;
  if (!reader->Value(&entry->head, &entry->domain) || !reader->Value(&entry->head, &entry->path) ||
      !reader->Value(&entry->head, &ignored) || !reader->Value(&entry->head, &ignored) ||
      !reader->Value(nullptr, &entry->encryptionKey) || !reader->Fixed(kFixedBlockSize, &entry->fixedBlock)) {
    return false;
  }
  const int count = static_cast<unsigned char>(entry->fixedBlock[kFixedBlockSize - 1]);
  for (int i = 0; i < count; ++i) {
    if (!reader->Value(&entry->properties, nullptr) || !reader->Value(&entry->properties, nullptr)) return false;
  }
  return true;
}

}  // namespace

bool MbdbEntry::IsRegularFile() const {
  return (static_cast<unsigned char>(fixedBlock[0]) & 0xF0) == 0x80;
}

uint64_t MbdbEntry::Size() const {
  uint64_t size = 0;
  for (size_t i = 0; i < 8; ++i) size = size << 8 | static_cast<unsigned char>(fixedBlock[kSizeOffset + i]);
  return size;
}

std::string MbdbEntry::PlainBytes(uint64_t size) const {
  std::string block = fixedBlock;
  for (size_t i = 0; i < 8; ++i) block[kSizeOffset + 7 - i] = static_cast<char>(size >> (8 * i) & 0xFF);
  return head + std::string("\xFF\xFF", 2) + block + properties;
}

std::optional<std::vector<MbdbEntry>> ReadMbdbEntries(std::string_view index) {
  if (index.substr(0, kSignature.size()) != kSignature) return std::nullopt;
  Reader reader(index.substr(kSignature.size()));
  std::vector<MbdbEntry> entries;
  while (!reader.AtEnd()) {
    MbdbEntry entry;
    if (!ReadEntry(&reader, &entry)) return std::nullopt;
    entries.push_back(std::move(entry));
  }
  return entries;
}
