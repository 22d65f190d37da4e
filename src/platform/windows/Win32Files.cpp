#include "platform/windows/Win32Files.h"

#include <fcntl.h>
#include <io.h>

#include <cerrno>
#include <cstdint>

namespace platform {

int ErrnoOf(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND: return ENOENT;
    case ERROR_ACCESS_DENIED: return EACCES;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS: return EEXIST;
    default: return EIO;
  }
}

int DescriptorOf(HANDLE handle, int flags) {
  if (handle == INVALID_HANDLE_VALUE) {
    errno = ErrnoOf(GetLastError());
    return -1;
  }
  const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(handle), flags | _O_BINARY | _O_NOINHERIT);
  if (fd < 0) CloseHandle(handle);
  return fd;
}

PathInfo PathInfoOf(const WIN32_FILE_ATTRIBUTE_DATA& data) {
  PathInfo info;
  const bool folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  info.folder = folder;
  info.regular = !folder && (data.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) == 0;
  info.link = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  info.size = folder ? 0 : (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
  // FILETIME counts 100 ns from 1601.
  const uint64_t ticks =
      (static_cast<uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) | data.ftLastWriteTime.dwLowDateTime;
  info.modified = (static_cast<int64_t>(ticks) - 116444736000000000LL) * 100;
  info.permissions = ((data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) ? 0444u : 0666u) | (folder ? 0111u : 0u);
  return info;
}

}  // namespace platform
