#include "platform/FileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/sendfile.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/CopyByReading.h"
#include "platform/posix/PathInfoOf.h"

namespace platform {

bool Stat(const std::string& path, PathInfo* info) {
  struct stat found;
  if (stat(path.c_str(), &found) != 0) return false;
  if (info) *info = PathInfoOf(found);
  return true;
}

bool StatNoFollow(const std::string& path, PathInfo* info) {
  struct stat found;
  if (lstat(path.c_str(), &found) != 0) return false;
  if (info) *info = PathInfoOf(found);
  return true;
}

bool IsFolder(const std::string& path) {
  PathInfo info;
  return Stat(path, &info) && info.folder;
}

std::vector<std::string> ListFolder(const std::string& folder) {
  std::vector<std::string> names;
  std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(folder.c_str()), closedir);
  if (!dir) return names;
  while (const dirent* entry = readdir(dir.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  return names;
}

bool MakePrivateFolder(const std::string& path) { return mkdir(path.c_str(), 0700) == 0; }

std::string MakeUniqueFolder(const std::string& parent, const std::string& prefix) {
  std::string pattern = parent + prefix + "XXXXXX";
  // mkdtemp makes the folder with mode 0700.
  return mkdtemp(pattern.data()) ? pattern + "/" : std::string();
}

bool IsAbsolutePath(const std::string& path) { return !path.empty() && path[0] == '/'; }

std::string ResolvedPath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
  return resolved ? resolved.get() : "";
}

std::string PortablePath(const std::string& path) { return path; }

std::string TemporaryFolder() {
  const char* tmp = std::getenv("TMPDIR");
  std::string root = tmp && tmp[0] == '/' ? tmp : "/tmp";
  if (root.back() != '/') root += '/';
  return root;
}

void RemoveTree(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
}

std::string SystemFileName(const std::string& name) { return name; }

bool RenameReplacing(const std::string& from, const std::string& to) { return std::rename(from.c_str(), to.c_str()) == 0; }

bool RemoveFile(const std::string& path) { return unlink(path.c_str()) == 0; }

FILE* OpenStream(const char* path, const char* mode) { return std::fopen(path, mode); }

int OpenForReading(const std::string& path) { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }

int OpenForReadingNoFollow(const std::string& path) {
  return open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
}

int CreatePrivateFile(const std::string& path) {
  return open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
}

bool CloseFile(int fd) { return close(fd) == 0; }

long long ReadSome(int fd, void* data, size_t size) {
  for (;;) {
    const ssize_t got = read(fd, data, size);
    if (got < 0 && errno == EINTR) continue;
    return got;
  }
}

long long ReadAt(int fd, void* data, size_t size, uint64_t offset) {
  char* bytes = static_cast<char*>(data);
  size_t done = 0;
  while (done < size) {
    const ssize_t got = pread(fd, bytes + done, size - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    if (got == 0) break;
    done += static_cast<size_t>(got);
  }
  return static_cast<long long>(done);
}

bool WriteAll(int fd, const void* data, size_t size) {
  const char* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t put = write(fd, bytes, size);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    bytes += put;
    size -= static_cast<size_t>(put);
  }
  return true;
}

bool StatOpen(int fd, PathInfo* info) {
  struct stat found;
  if (fstat(fd, &found) != 0) return false;
  if (info) *info = PathInfoOf(found);
  return true;
}

void AdviseSequential(int fd) {
#ifdef POSIX_FADV_SEQUENTIAL
  posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
#else
  (void)fd;
#endif
}

bool CopyBytes(int in, int out, uint64_t size) {
#ifdef __linux__
  // The kernel copies without a trip through user memory.
  while (size > 0) {
    const ssize_t sent = sendfile(out, in, nullptr, static_cast<size_t>(size));
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) return false;
    size -= static_cast<uint64_t>(sent);
  }
  return true;
#else
  return CopyByReading(in, out, size);
#endif
}

bool SetFileTimes(int fd, int64_t instant) {
  const timespec times[2] = {{static_cast<time_t>(instant), 0}, {static_cast<time_t>(instant), 0}};
  return futimens(fd, times) == 0;
}

std::optional<DataRun> NextData(int fd, uint64_t offset, uint64_t size) {
  if (offset >= size) return std::nullopt;
  const off_t data = lseek(fd, static_cast<off_t>(offset), SEEK_DATA);
  // ENXIO: only holes from `offset` on; any other error: a file system that
  // cannot tell holes.
  if (data < 0) return errno == ENXIO ? std::nullopt : std::optional<DataRun>(DataRun{offset, size});
  if (static_cast<uint64_t>(data) >= size) return std::nullopt;
  const off_t hole = lseek(fd, data, SEEK_HOLE);
  const uint64_t end = hole < 0 ? size : std::min(size, static_cast<uint64_t>(hole));
  return DataRun{static_cast<uint64_t>(data), end};
}

bool Seek(int fd, uint64_t offset) { return lseek(fd, static_cast<off_t>(offset), SEEK_SET) >= 0; }

bool SetFileSize(int fd, uint64_t size) { return ftruncate(fd, static_cast<off_t>(size)) == 0; }

}  // namespace platform
