#include "common/FileHelpers.h"

#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/FileSystem.h"

int VQIsFileExists(const char* path) { return platform::Stat(path) ? 1 : 0; }

int VQIsRegularFile(const char* path) {
  platform::PathInfo info;
  return platform::Stat(path, &info) && info.regular ? 1 : 0;
}

uint64_t VQGetFileSize(const char* path) {
  platform::PathInfo info;
  return platform::Stat(path, &info) ? info.size : 0;
}

std::optional<std::string> ReadRegularFile(const std::string& path) {
  if (!VQIsRegularFile(path.c_str())) return std::nullopt;
  std::unique_ptr<FILE, int (*)(FILE*)> in(platform::OpenStream(path.c_str(), "rb"), std::fclose);
  if (!in) return std::nullopt;
  std::string bytes;
  char chunk[1 << 16];
  size_t got;
  while ((got = std::fread(chunk, 1, sizeof chunk, in.get())) > 0) bytes.append(chunk, got);
  if (std::ferror(in.get())) return std::nullopt;
  return bytes;
}

int VQIsLittleEndian() {
  const uint16_t one = 1;
  unsigned char first;
  std::memcpy(&first, &one, 1);
  return first == 1 ? 1 : 0;
}
