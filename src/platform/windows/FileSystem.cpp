#include "platform/FileSystem.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "platform/CopyByReading.h"
#include "platform/windows/Win32Files.h"
#include "platform/windows/Wide.h"

namespace platform {

namespace {

bool FromAttributes(const WIN32_FILE_ATTRIBUTE_DATA& data, PathInfo* info) {
  if (info) *info = PathInfoOf(data);
  return true;
}

// A handle that follows links, asked for what it reaches.
bool StatFollowing(const std::wstring& path, PathInfo* info) {
  const HANDLE handle = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  BY_HANDLE_FILE_INFORMATION found;
  const bool known = GetFileInformationByHandle(handle, &found) != 0;
  CloseHandle(handle);
  if (!known) return false;
  WIN32_FILE_ATTRIBUTE_DATA data{};
  data.dwFileAttributes = found.dwFileAttributes & ~FILE_ATTRIBUTE_REPARSE_POINT;
  data.nFileSizeHigh = found.nFileSizeHigh;
  data.nFileSizeLow = found.nFileSizeLow;
  data.ftLastWriteTime = found.ftLastWriteTime;
  return FromAttributes(data, info);
}

}  // namespace

bool Stat(const std::string& path, PathInfo* info) {
  const std::wstring wide = Wide(path);
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(wide.c_str(), GetFileExInfoStandard, &data)) return false;
  if (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) return StatFollowing(wide, info);
  return FromAttributes(data, info);
}

bool StatNoFollow(const std::string& path, PathInfo* info) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(Wide(path).c_str(), GetFileExInfoStandard, &data)) {
    errno = ErrnoOf(GetLastError());
    return false;
  }
  return FromAttributes(data, info);
}

bool IsFolder(const std::string& path) {
  PathInfo info;
  return Stat(path, &info) && info.folder;
}

std::vector<std::string> ListFolder(const std::string& folder) {
  std::vector<std::string> names;
  std::string pattern = folder;
  if (!pattern.empty() && pattern.back() != '/' && pattern.back() != '\\') pattern += '\\';
  WIN32_FIND_DATAW entry;
  const HANDLE find = FindFirstFileW(Wide(pattern + "*").c_str(), &entry);
  if (find == INVALID_HANDLE_VALUE) return names;
  do {
    const std::string name = Narrow(entry.cFileName);
    if (name != "." && name != "..") names.push_back(name);
  } while (FindNextFileW(find, &entry));
  FindClose(find);
  return names;
}

// A folder made below the user's profile or temporary folder inherits an
// access list that lets only the user (and administrators) in.
bool MakePrivateFolder(const std::string& path) { return CreateDirectoryW(Wide(path).c_str(), nullptr) != 0; }

std::string MakeUniqueFolder(const std::string& parent, const std::string& prefix) {
  for (int attempt = 0; attempt < 100; ++attempt) {
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    const unsigned long long tail =
        (static_cast<unsigned long long>(counter.QuadPart) * 2654435761ULL) ^ (GetCurrentProcessId() * 40503ULL) ^
        static_cast<unsigned long long>(attempt);
    std::string name = prefix;
    for (int i = 0; i < 6; ++i) name += "abcdefghijklmnopqrstuvwxyz0123456789"[(tail >> (i * 5)) % 36];
    const std::string path = parent + name;
    if (MakePrivateFolder(path)) return path + "/";
    if (GetLastError() != ERROR_ALREADY_EXISTS) return std::string();
  }
  return std::string();
}

bool IsAbsolutePath(const std::string& path) {
  const auto separator = [](char c) { return c == '/' || c == '\\'; };
  if (path.size() >= 3 && std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':' && separator(path[2])) {
    return true;
  }
  return path.size() >= 2 && separator(path[0]) && separator(path[1]);
}

std::string PortablePath(const std::string& path) {
  std::string portable = path;
  std::replace(portable.begin(), portable.end(), '\\', '/');
  return portable;
}

std::string ResolvedPath(const std::string& path) {
  const HANDLE handle = CreateFileW(Wide(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    errno = ENOENT;
    return "";
  }
  std::wstring buffer(MAX_PATH, L'\0');
  DWORD size = GetFinalPathNameByHandleW(handle, buffer.data(), static_cast<DWORD>(buffer.size()), FILE_NAME_NORMALIZED);
  if (size >= buffer.size()) {
    buffer.resize(size + 1);
    size = GetFinalPathNameByHandleW(handle, buffer.data(), static_cast<DWORD>(buffer.size()), FILE_NAME_NORMALIZED);
  }
  CloseHandle(handle);
  if (size == 0 || size >= buffer.size()) {
    errno = EIO;
    return "";
  }
  buffer.resize(size);
  // "\\?\C:\..." as the system gives it; "\\?\UNC\server\..." for shares.
  if (buffer.compare(0, 8, L"\\\\?\\UNC\\") == 0) {
    buffer = L"\\\\" + buffer.substr(8);
  } else if (buffer.compare(0, 4, L"\\\\?\\") == 0) {
    buffer = buffer.substr(4);
  }
  return PortablePath(Narrow(buffer));
}

std::string TemporaryFolder() {
  wchar_t buffer[MAX_PATH + 2];
  const DWORD size = GetTempPathW(MAX_PATH + 2, buffer);
  std::string root = PortablePath(size > 0 && size <= MAX_PATH + 1 ? Narrow(std::wstring(buffer, size)) : "C:/");
  if (root.back() != '/') root += '/';
  return root;
}

void RemoveTree(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove_all(std::filesystem::path(Wide(path)), ignored);
}

std::string SystemFileName(const std::string& name) {
  std::string made = name;
  for (char& c : made) {
    if (std::strchr("<>:\"|?*", c) && c != '\0') c = '_';
  }
  if (!made.empty() && (made.back() == '.' || made.back() == ' ')) made.back() = '_';
  std::string device = made.substr(0, made.find('.'));
  for (char& c : device) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  const bool numbered = device.size() == 4 && device[3] >= '1' && device[3] <= '9' &&
                        (device.compare(0, 3, "COM") == 0 || device.compare(0, 3, "LPT") == 0);
  if (numbered || device == "CON" || device == "PRN" || device == "AUX" || device == "NUL") made = "_" + made;
  return made;
}

bool RenameReplacing(const std::string& from, const std::string& to) {
  return MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

bool RemoveFile(const std::string& path) { return DeleteFileW(Wide(path).c_str()) != 0; }

FILE* OpenStream(const char* path, const char* mode) {
  std::string binary = mode;
  if (binary.find('b') == std::string::npos) binary += 'b';
  return _wfopen(Wide(path).c_str(), Wide(binary).c_str());
}

int OpenForReading(const std::string& path) {
  return DescriptorOf(CreateFileW(Wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr),
                      _O_RDONLY);
}

int OpenForReadingNoFollow(const std::string& path) {
  const HANDLE handle =
      CreateFileW(Wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  BY_HANDLE_FILE_INFORMATION found;
  if (handle != INVALID_HANDLE_VALUE && GetFileInformationByHandle(handle, &found) &&
      (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
    CloseHandle(handle);
    errno = ELOOP;
    return -1;
  }
  return DescriptorOf(handle, _O_RDONLY);
}

int CreatePrivateFile(const std::string& path) {
  const std::wstring wide = Wide(path);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
    errno = ELOOP;
    return -1;
  }
  return DescriptorOf(CreateFileW(wide.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr),
                      _O_WRONLY);
}

bool CloseFile(int fd) { return _close(fd) == 0; }

long long ReadSome(int fd, void* data, size_t size) {
  const unsigned int chunk = size > (1u << 30) ? (1u << 30) : static_cast<unsigned int>(size);
  return _read(fd, data, chunk);
}

long long ReadAt(int fd, void* data, size_t size, uint64_t offset) {
  const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(fd));
  if (handle == INVALID_HANDLE_VALUE) return -1;
  char* bytes = static_cast<char*>(data);
  size_t done = 0;
  while (done < size) {
    // The offset travels in the OVERLAPPED structure, also for a handle opened for synchronous reads.
    OVERLAPPED at{};
    const uint64_t position = offset + done;
    at.Offset = static_cast<DWORD>(position);
    at.OffsetHigh = static_cast<DWORD>(position >> 32);
    const DWORD chunk = size - done > (1u << 30) ? (1u << 30) : static_cast<DWORD>(size - done);
    DWORD got = 0;
    if (!ReadFile(handle, bytes + done, chunk, &got, &at)) {
      if (GetLastError() == ERROR_HANDLE_EOF) break;
      return -1;
    }
    if (got == 0) break;
    done += got;
  }
  return static_cast<long long>(done);
}

bool WriteAll(int fd, const void* data, size_t size) {
  const char* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const unsigned int chunk = size > (1u << 30) ? (1u << 30) : static_cast<unsigned int>(size);
    const int put = _write(fd, bytes, chunk);
    if (put <= 0) return false;
    bytes += put;
    size -= static_cast<size_t>(put);
  }
  return true;
}

bool StatOpen(int fd, PathInfo* info) {
  const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(fd));
  BY_HANDLE_FILE_INFORMATION found;
  if (handle == INVALID_HANDLE_VALUE || !GetFileInformationByHandle(handle, &found)) return false;
  WIN32_FILE_ATTRIBUTE_DATA data{};
  data.dwFileAttributes = found.dwFileAttributes;
  data.nFileSizeHigh = found.nFileSizeHigh;
  data.nFileSizeLow = found.nFileSizeLow;
  data.ftLastWriteTime = found.ftLastWriteTime;
  return FromAttributes(data, info);
}

void AdviseSequential(int) {}

bool CopyBytes(int in, int out, uint64_t size) { return CopyByReading(in, out, size); }

bool SetFileTimes(int fd, int64_t instant) {
  const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(fd));
  // FILETIME counts 100 ns from 1601, and cannot go before.
  constexpr int64_t kFrom1601 = 11644473600LL;
  if (handle == INVALID_HANDLE_VALUE || instant < -kFrom1601) return false;
  const uint64_t ticks = static_cast<uint64_t>(instant + kFrom1601) * 10000000ULL;
  const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  return SetFileTime(handle, nullptr, &time, &time) != 0;
}

// No holes are looked for: every byte counts as data.
std::optional<DataRun> NextData(int, uint64_t offset, uint64_t size) {
  if (offset >= size) return std::nullopt;
  return DataRun{offset, size};
}

bool Seek(int fd, uint64_t offset) { return _lseeki64(fd, static_cast<long long>(offset), SEEK_SET) >= 0; }

bool SetFileSize(int fd, uint64_t size) { return _chsize_s(fd, static_cast<long long>(size)) == 0; }

}  // namespace platform
