#include "common/FileHelpers.h"

#include <sys/stat.h>

#include <cstring>

int VQIsFileExists(const char* path) {
  struct stat info;
  return stat(path, &info) == 0 ? 1 : 0;
}

int VQIsRegularFile(const char* path) {
  struct stat info;
  return stat(path, &info) == 0 && S_ISREG(info.st_mode) ? 1 : 0;
}

uint64_t VQGetFileSize(const char* path) {
  struct stat info;
  if (stat(path, &info) != 0) return 0;
  return static_cast<uint64_t>(info.st_size);
}

int VQIsLittleEndian() {
  const uint16_t one = 1;
  unsigned char first;
  std::memcpy(&first, &one, 1);
  return first == 1 ? 1 : 0;
}
