#ifndef YH_PLATFORM_FILESYSTEM_H
#define YH_PLATFORM_FILESYSTEM_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

// Everything the library and yh ask of the operating system's files, behind
// one interface with one implementation per system. Paths are UTF-8 and may
// use "/" as the separator on every system; on Windows they become UTF-16 at
// the system call. Descriptors are the C runtime's, opened in binary mode.
namespace platform {

// What the system finds at a path.
struct PathInfo {
  uint64_t size = 0;
  bool folder = false;
  bool regular = false;
  bool link = false;  // a symbolic link, junction or other reparse point (StatNoFollow only)
  int64_t modified = 0;      // nanoseconds since 1970
  uint32_t permissions = 0;  // the mode's permission bits; on Windows 0444 or 0666, and 0111 more for folders
};

// Whether anything is at `path`, following links (a link to a folder is a
// folder); `info`, when given, gets what was found.
bool Stat(const std::string& path, PathInfo* info = nullptr);
// The same without following a last link, junction or reparse point; when
// nothing is there, errno is ENOENT.
bool StatNoFollow(const std::string& path, PathInfo* info = nullptr);
// True when the path exists and is a folder; a link to a folder counts.
bool IsFolder(const std::string& path);

// The names of a folder's entries in the order the system lists them,
// without "." and ".."; none for a folder that cannot be listed.
std::vector<std::string> ListFolder(const std::string& folder);

// Makes one folder that only the user may read (mode 0700 where modes exist).
bool MakePrivateFolder(const std::string& path);
// A new folder private to the user inside `parent`, named `prefix` and a
// unique tail; its path ends in "/", empty when none could be made.
std::string MakeUniqueFolder(const std::string& parent, const std::string& prefix);
// Whether `path` names a place without a current folder: "/..." on POSIX
// systems; "C:/...", "C:\\..." or "\\\\server\\..." on Windows.
bool IsAbsolutePath(const std::string& path);
// The path with "/" between names: unchanged on POSIX systems, where "\"
// is a character of names; on Windows each "\" becomes "/".
std::string PortablePath(const std::string& path);
// The path with every link, junction, "." and ".." resolved, "/" between
// names; "" when nothing is there (errno tells why).
std::string ResolvedPath(const std::string& path);
// The system's folder for temporary files, ending in "/".
std::string TemporaryFolder();
// Removes a file, or a folder with everything below it; links are removed,
// never followed.
void RemoveTree(const std::string& path);

// A file name (one component, free of control characters and "/" already)
// made one this system takes as it is: unchanged on POSIX systems; on
// Windows each of <>:"|?* becomes "_", and so does a last dot or space,
// and a device name (CON, PRN, AUX, NUL, COM1 to COM9, LPT1 to LPT9 in any
// case, alone or before a dot) gets "_" before it.
std::string SystemFileName(const std::string& name);

// Renames `from` to `to`, replacing what `to` names.
bool RenameReplacing(const std::string& from, const std::string& to);
bool RemoveFile(const std::string& path);

// fopen of a UTF-8 path; binary on every system.
FILE* OpenStream(const char* path, const char* mode);

// A descriptor to read `path` from, -1 when it cannot be opened; opening a
// named pipe does not wait for a writer.
int OpenForReading(const std::string& path);
// OpenForReading of a path whose last name is no link, junction or reparse
// point: -1 with errno ELOOP when it is one.
int OpenForReadingNoFollow(const std::string& path);
// Creates or truncates `path` for writing, private to the user; refuses a
// path that is a link, junction or reparse point. -1 on failure.
int CreatePrivateFile(const std::string& path);
bool CloseFile(int fd);
// Reads up to `size` bytes, going on after interruptions: the count read,
// 0 at the end, -1 on an error.
long long ReadSome(int fd, void* data, size_t size);
// Reads up to `size` bytes at `offset` of the file, going on after
// interruptions and short reads: the count read (fewer only at the end of
// the file), -1 on an error. The descriptor's own offset is left undefined.
long long ReadAt(int fd, void* data, size_t size, uint64_t offset);
// Writes every byte, going on after short writes; false on an error.
bool WriteAll(int fd, const void* data, size_t size);
// What the open file is; false when the system cannot tell.
bool StatOpen(int fd, PathInfo* info);
// A hint that the file will be read once from start to end.
void AdviseSequential(int fd);
// Copies `size` bytes from the current offset of `in` to `out`.
bool CopyBytes(int in, int out, uint64_t size);

// Gives an open file (opened for writing) `instant` (seconds since 1970) as
// its modification and access time.
bool SetFileTimes(int fd, int64_t instant);

// A stretch [start, end) of an open file that holds data.
struct DataRun {
  uint64_t start = 0;
  uint64_t end = 0;
};
// The first stretch of data at or after `offset` within the file's first
// `size` bytes, holes skipped where the system tells them (Linux); where it
// cannot, all that is left is data. Nothing when only holes are left.
std::optional<DataRun> NextData(int fd, uint64_t offset, uint64_t size);
// Moves the descriptor's offset to `offset`.
bool Seek(int fd, uint64_t offset);
// Makes an open file `size` bytes long; what it grows by is a hole where
// the system makes holes, zeros elsewhere.
bool SetFileSize(int fd, uint64_t size);

}  // namespace platform

#endif
