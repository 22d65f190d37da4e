#include "platform/WritableFolder.h"

#include <fcntl.h>
#include <windows.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/windows/Win32Files.h"
#include "platform/windows/Wide.h"

namespace platform {

namespace {

// The whole path in the form that lifts MAX_PATH ("\\?\C:\..." or
// "\\?\UNC\server\..."): names of 200 bytes below a deep folder are common.
std::wstring SystemPath(const std::string& path) {
  const std::wstring given = Wide(path);
  const DWORD size = GetFullPathNameW(given.c_str(), 0, nullptr, nullptr);
  std::wstring full(size, L'\0');
  const DWORD written = size ? GetFullPathNameW(given.c_str(), size, full.data(), nullptr) : 0;
  if (written == 0 || written >= size) return given;
  full.resize(written);
  if (full.compare(0, 4, L"\\\\?\\") == 0) return full;
  if (full.compare(0, 2, L"\\\\") == 0) return L"\\\\?\\UNC\\" + full.substr(2);
  return L"\\\\?\\" + full;
}

// Holds a folder without FILE_SHARE_DELETE, so that no one renames or
// removes it, or puts a junction in its place, while it is held. Refuses a
// reparse point where `noFollow`; errno tells why on failure.
HANDLE HoldFolder(const std::wstring& path, bool noFollow) {
  const HANDLE handle =
      CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                  FILE_FLAG_BACKUP_SEMANTICS | (noFollow ? FILE_FLAG_OPEN_REPARSE_POINT : 0), nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    errno = ErrnoOf(GetLastError());
    return handle;
  }
  BY_HANDLE_FILE_INFORMATION found;
  int refused = 0;
  if (!GetFileInformationByHandle(handle, &found)) {
    refused = ErrnoOf(GetLastError());
  } else if (noFollow && (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
    refused = ELOOP;
  } else if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
    refused = ENOTDIR;
  }
  if (!refused) return handle;
  CloseHandle(handle);
  errno = refused;
  return INVALID_HANDLE_VALUE;
}

}  // namespace

void WritableFolder::Close() {
  if (held_ != -1) CloseHandle(reinterpret_cast<HANDLE>(held_));
  held_ = -1;
}

bool WritableFolder::Open(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(Wide(path)), error);
  if (error) {
    errno = error.value();
    return false;
  }
  const HANDLE handle = HoldFolder(SystemPath(path), false);
  if (handle == INVALID_HANDLE_VALUE) return false;
  Close();
  path_ = path;
  held_ = reinterpret_cast<intptr_t>(handle);
  return true;
}

bool WritableFolder::OpenSub(const std::string& name, WritableFolder* sub) const {
  const std::string path = path_ + "/" + name;
  const std::wstring wide = SystemPath(path);
  if (!CreateDirectoryW(wide.c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS) {
    errno = ErrnoOf(GetLastError());
    return false;
  }
  const HANDLE handle = HoldFolder(wide, true);
  if (handle == INVALID_HANDLE_VALUE) return false;
  sub->Close();
  sub->path_ = path;
  sub->held_ = reinterpret_cast<intptr_t>(handle);
  return true;
}

// CREATE_NEW fails on anything at the name, a link or junction included.
int WritableFolder::CreateNew(const std::string& name) const {
  return DescriptorOf(CreateFileW(SystemPath(path_ + "/" + name).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr),
                      _O_WRONLY);
}

bool WritableFolder::RenameNew(const std::string& from, const std::string& to) const {
  if (MoveFileExW(SystemPath(path_ + "/" + from).c_str(), SystemPath(path_ + "/" + to).c_str(), 0)) return true;
  errno = ErrnoOf(GetLastError());
  return false;
}

bool WritableFolder::StatNoFollow(const std::string& name, PathInfo* info) const {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(SystemPath(path_ + "/" + name).c_str(), GetFileExInfoStandard, &data)) {
    errno = ErrnoOf(GetLastError());
    return false;
  }
  *info = PathInfoOf(data);
  return true;
}

bool WritableFolder::Remove(const std::string& name) const {
  if (DeleteFileW(SystemPath(path_ + "/" + name).c_str())) return true;
  errno = ErrnoOf(GetLastError());
  return false;
}

}  // namespace platform
