#ifndef YH_RECOVERY_BYTESOURCE_H
#define YH_RECOVERY_BYTESOURCE_H

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

// The bytes of one stored file (a database, its -wal or its journal), read
// at any offset. Reading never changes the file.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual uint64_t Size() const = 0;
  // Whether Read's views stay valid as long as the source (bytes already in
  // memory); otherwise they view `buffer` and last until it changes.
  virtual bool InMemory() const = 0;
  // The bytes from `offset`, at most `size`: fewer at the end of the source
  // or after a failed read, none beyond it.
  virtual std::string_view Read(uint64_t offset, size_t size, std::string* buffer) const = 0;
};

// Bytes the caller holds in memory, viewed in place.
class MemoryBytes : public ByteSource {
 public:
  explicit MemoryBytes(std::string_view bytes) : bytes_(bytes) {}
  uint64_t Size() const override { return bytes_.size(); }
  bool InMemory() const override { return true; }
  std::string_view Read(uint64_t offset, size_t size, std::string*) const override {
    if (offset >= bytes_.size()) return {};
    return bytes_.substr(static_cast<size_t>(offset), std::min<uint64_t>(size, bytes_.size() - offset));
  }

 private:
  std::string_view bytes_;
};

#endif
