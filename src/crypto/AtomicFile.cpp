#include "crypto/AtomicFile.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

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

bool WriteAtomically(const std::string& path, const std::function<bool(int fd)>& fill) {
  const std::string partial = path + ".partial";
  const int fd = open(partial.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (fd < 0) return false;
  const bool filled = fill(fd);
  const bool closed = close(fd) == 0;
  if (!filled || !closed || std::rename(partial.c_str(), path.c_str()) != 0) {
    unlink(partial.c_str());
    return false;
  }
  return true;
}

bool WriteBytesAtomically(const std::string& path, const std::string& bytes) {
  return WriteAtomically(path, [&bytes](int fd) { return WriteAll(fd, bytes.data(), bytes.size()); });
}

bool CopyAtomically(const std::string& source, const std::string& path) {
  const int in = open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (in < 0) return false;
  struct stat info {};
  bool copied = fstat(in, &info) == 0 && S_ISREG(info.st_mode);
  if (copied) {
    copied = WriteAtomically(path, [in, &info](int fd) {
      off_t offset = 0;
      while (offset < info.st_size) {
        const ssize_t sent = sendfile(fd, in, &offset, static_cast<size_t>(info.st_size - offset));
        if (sent <= 0) return false;
      }
      return true;
    });
  }
  close(in);
  return copied;
}
