#ifndef YH_RECOVERY_FILEBYTES_H
#define YH_RECOVERY_FILEBYTES_H

#include <string>

#include "recovery/ByteSource.h"

// A stored file read where asked through positional reads, never whole: its
// descriptor stays open, read-only, until the object goes. Anything but a
// regular file (missing, a folder, a named pipe) gives no bytes.
class FileBytes : public ByteSource {
 public:
  explicit FileBytes(const std::string& path);
  ~FileBytes() override;
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  bool IsOpen() const { return fd_ >= 0; }
  uint64_t Size() const override { return size_; }
  bool InMemory() const override { return false; }
  std::string_view Read(uint64_t offset, size_t size, std::string* buffer) const override;

 private:
  int fd_ = -1;
  uint64_t size_ = 0;  // as found when opened: bytes appended later are not read
};

#endif
