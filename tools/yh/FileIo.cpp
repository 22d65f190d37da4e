#include "FileIo.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "Failure.h"
#include "Interruption.h"
#include "TerminalText.h"
#include "platform/FileSystem.h"

namespace yh {
namespace {

constexpr size_t kChunk = 1 << 16;

[[noreturn]] void Fail(const std::string& what) { throw Failure(Printable(what) + ": " + std::strerror(errno)); }

// Each write is a point where Ctrl-C may stop the copy.
void WriteBytes(int fd, const char* data, size_t size, const std::string& what) {
  StopIfInterrupted();
  if (!platform::WriteAll(fd, data, size)) Fail(what);
}

// Copies up to `limit` bytes from where `from` stands.
void CopyBytes(int from, int to, uint64_t limit, const std::string& what) {
  std::vector<char> buffer(kChunk);
  uint64_t copied = 0;
  while (copied < limit) {
    const long long got = platform::ReadSome(from, buffer.data(), std::min<uint64_t>(buffer.size(), limit - copied));
    if (got < 0) Fail(what);
    if (got == 0) break;
    WriteBytes(to, buffer.data(), static_cast<size_t>(got), what);
    copied += static_cast<uint64_t>(got);
  }
}

}  // namespace

std::string ReadAll(int fd) {
  std::string bytes;
  std::vector<char> buffer(kChunk);
  for (;;) {
    const long long got = platform::ReadSome(fd, buffer.data(), buffer.size());
    if (got <= 0) return bytes;
    bytes.append(buffer.data(), static_cast<size_t>(got));
  }
}

void WriteAll(int fd, std::string_view bytes, const std::string& what) {
  WriteBytes(fd, bytes.data(), bytes.size(), what);
}

// Holes stay holes where the system tells them, so sparse files cost no
// more than their data.
uint64_t CopyFile(int from, int to, const std::string& what) {
  platform::PathInfo info;
  if (!platform::StatOpen(from, &info)) Fail(what);
  for (auto run = platform::NextData(from, 0, info.size); run; run = platform::NextData(from, run->end, info.size)) {
    if (!platform::Seek(from, run->start) || !platform::Seek(to, run->start)) Fail(what);
    CopyBytes(from, to, run->end - run->start, what);
  }
  if (!platform::SetFileSize(to, info.size)) Fail(what);
  return info.size;
}

}  // namespace yh
