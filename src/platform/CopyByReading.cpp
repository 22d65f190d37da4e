#include "platform/CopyByReading.h"

#include "platform/FileSystem.h"

namespace platform {

bool CopyByReading(int in, int out, uint64_t size) {
  char buffer[1 << 16];
  while (size > 0) {
    const long long got = ReadSome(in, buffer, size < sizeof buffer ? static_cast<size_t>(size) : sizeof buffer);
    if (got <= 0 || !WriteAll(out, buffer, static_cast<size_t>(got))) return false;
    size -= static_cast<uint64_t>(got);
  }
  return true;
}

}  // namespace platform
