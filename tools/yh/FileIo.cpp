#include "FileIo.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <vector>

#include "Failure.h"
#include "Interruption.h"
#include "TerminalText.h"

namespace yh {
namespace {

constexpr size_t kChunk = 1 << 16;

[[noreturn]] void Fail(const std::string& what) { throw Failure(Printable(what) + ": " + std::strerror(errno)); }

// Each block is a point where Ctrl-C may stop the copy.
void WriteBytes(int fd, const char* data, size_t size, const std::string& what) {
  while (size > 0) {
    StopIfInterrupted();
    const ssize_t written = ::write(fd, data, size);
    if (written < 0) {
      if (errno == EINTR) continue;
      Fail(what);
    }
    data += written;
    size -= static_cast<size_t>(written);
  }
}

// Copies up to `limit` bytes from where `from` stands; returns the bytes copied.
uint64_t CopyBytes(int from, int to, uint64_t limit, const std::string& what) {
  std::vector<char> buffer(kChunk);
  uint64_t copied = 0;
  while (copied < limit) {
    const ssize_t got = ::read(from, buffer.data(), std::min<uint64_t>(buffer.size(), limit - copied));
    if (got < 0) {
      if (errno == EINTR) continue;
      Fail(what);
    }
    if (got == 0) break;
    WriteBytes(to, buffer.data(), static_cast<size_t>(got), what);
    copied += static_cast<uint64_t>(got);
  }
  return copied;
}

}  // namespace

std::string ReadAll(int fd) {
  std::string bytes;
  std::vector<char> buffer(kChunk);
  for (;;) {
    const ssize_t got = ::read(fd, buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return bytes;
    bytes.append(buffer.data(), static_cast<size_t>(got));
  }
}

void WriteAll(int fd, std::string_view bytes, const std::string& what) {
  WriteBytes(fd, bytes.data(), bytes.size(), what);
}

uint64_t CopyFile(int from, int to, const std::string& what) {
  struct stat status {};
  if (::fstat(from, &status) != 0) Fail(what);
  off_t data = ::lseek(from, 0, SEEK_DATA);
  // A file system that cannot tell holes: copy every byte.
  if (data < 0 && errno != ENXIO) {
    if (::lseek(from, 0, SEEK_SET) < 0) Fail(what);
    return CopyBytes(from, to, std::numeric_limits<uint64_t>::max(), what);
  }
  // Holes stay holes, so sparse files cost no more than their data.
  while (data >= 0 && data < status.st_size) {
    const off_t hole = ::lseek(from, data, SEEK_HOLE);
    if (hole < 0 || ::lseek(from, data, SEEK_SET) < 0 || ::lseek(to, data, SEEK_SET) < 0) Fail(what);
    CopyBytes(from, to, static_cast<uint64_t>(hole - data), what);
    data = ::lseek(from, hole, SEEK_DATA);
  }
  if (::ftruncate(to, status.st_size) != 0) Fail(what);
  return static_cast<uint64_t>(status.st_size);
}

}  // namespace yh
