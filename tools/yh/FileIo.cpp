#include "FileIo.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "Failure.h"
#include "TerminalText.h"

namespace yh {
namespace {

constexpr size_t kChunk = 1 << 16;

[[noreturn]] void Fail(const std::string& what) { throw Failure(Printable(what) + ": " + std::strerror(errno)); }

void WriteBytes(int fd, const char* data, size_t size, const std::string& what) {
  while (size > 0) {
    const ssize_t written = ::write(fd, data, size);
    if (written < 0) {
      if (errno == EINTR) continue;
      Fail(what);
    }
    data += written;
    size -= static_cast<size_t>(written);
  }
}

}  // namespace

void WriteAll(int fd, const std::string& bytes, const std::string& what) {
  WriteBytes(fd, bytes.data(), bytes.size(), what);
}

uint64_t CopyAll(int from, int to, const std::string& what) {
  std::vector<char> buffer(kChunk);
  uint64_t copied = 0;
  for (;;) {
    const ssize_t got = ::read(from, buffer.data(), buffer.size());
    if (got < 0) {
      if (errno == EINTR) continue;
      Fail(what);
    }
    if (got == 0) return copied;
    WriteBytes(to, buffer.data(), static_cast<size_t>(got), what);
    copied += static_cast<uint64_t>(got);
  }
}

}  // namespace yh
