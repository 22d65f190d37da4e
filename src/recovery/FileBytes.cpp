#include "recovery/FileBytes.h"

#include "platform/FileSystem.h"

FileBytes::FileBytes(const std::string& path) {
  if (path.empty()) return;
  fd_ = platform::OpenForReading(path);
  platform::PathInfo info;
  if (fd_ >= 0 && (!platform::StatOpen(fd_, &info) || !info.regular)) {
    platform::CloseFile(fd_);
    fd_ = -1;
  }
  if (fd_ >= 0) size_ = info.size;
}

FileBytes::~FileBytes() {
  if (fd_ >= 0) platform::CloseFile(fd_);
}

std::string_view FileBytes::Read(uint64_t offset, size_t size, std::string* buffer) const {
  if (offset >= size_) return {};
  buffer->resize(static_cast<size_t>(std::min<uint64_t>(size, size_ - offset)));
  const long long got = platform::ReadAt(fd_, buffer->data(), buffer->size(), offset);
  buffer->resize(got > 0 ? static_cast<size_t>(got) : 0);
  return *buffer;
}
