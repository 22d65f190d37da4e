#include "crypto/AtomicFile.h"

#include "platform/FileSystem.h"

bool WriteAtomically(const std::string& path, const std::function<bool(int fd)>& fill) {
  const std::string partial = path + ".partial";
  const int fd = platform::CreatePrivateFile(partial);
  if (fd < 0) return false;
  const bool filled = fill(fd);
  const bool closed = platform::CloseFile(fd);
  if (!filled || !closed || !platform::RenameReplacing(partial, path)) {
    platform::RemoveFile(partial);
    return false;
  }
  return true;
}

bool WriteBytesAtomically(const std::string& path, const std::string& bytes) {
  return WriteAtomically(path, [&bytes](int fd) { return platform::WriteAll(fd, bytes.data(), bytes.size()); });
}

bool CopyAtomically(const std::string& source, const std::string& path) {
  const int in = platform::OpenForReading(source);
  if (in < 0) return false;
  platform::PathInfo info;
  bool copied = platform::StatOpen(in, &info) && info.regular;
  if (copied) copied = WriteAtomically(path, [in, &info](int fd) { return platform::CopyBytes(in, fd, info.size); });
  platform::CloseFile(in);
  return copied;
}
