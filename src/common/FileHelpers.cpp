#include "common/FileHelpers.h"

#include <cstring>

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

int VQIsLittleEndian() {
  const uint16_t one = 1;
  unsigned char first;
  std::memcpy(&first, &one, 1);
  return first == 1 ? 1 : 0;
}
