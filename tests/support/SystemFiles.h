#ifndef YH_TESTS_SUPPORT_SYSTEMFILES_H
#define YH_TESTS_SUPPORT_SYSTEMFILES_H

#include <string>

// The kinds of file and the permissions tests make, one implementation per
// system. Where a system has no such thing, the test skips with Why().
namespace yhtest {

// A symbolic link at `link` to `target` (a folder or a file, or nothing);
// false when the system made none.
bool MakeSymlink(const std::string& target, const std::string& link);
// Whether this system makes symbolic links for an unprivileged user (wine 8
// and Windows without developer mode do not), and why not, for GTEST_SKIP.
bool HasLinks();
const char* WhyNoLinks();

// A path as the system's own programs write it: unchanged on POSIX, with
// "\" between names on Windows.
std::string NativePath(const std::string& path);

// Whether a file name may hold "?" (not on Windows).
bool NamesMayHoldQuestionMarks();

// The environment variable that names the system's temporary folder.
const char* TemporaryFolderVariable();

// Copies the tree at `from` to `to`, links as links; both may end in "/".
void CopyTree(const std::string& from, const std::string& to);

// Named pipes in the file system and POSIX permission bits: false on Windows.
bool HasFifos();
bool HasModes();
// Why the two above may be false, for GTEST_SKIP.
const char* WhyNoFifos();
const char* WhyNoModes();

// Whether copies of sparse files keep their holes (not on Windows, where
// every byte is copied), why not, and the bytes a file takes on disk.
bool KeepsHoles();
const char* WhyNoHoles();
unsigned long long BytesOnDisk(const std::string& path);

// A named pipe at `path`; only where HasFifos().
bool MakeFifo(const std::string& path);
// Opens and closes the pipe's writing end without waiting for a reader, so
// that a reader blocked on it returns.
void ReleaseFifo(const std::string& path);

// chmod where HasModes(); on Windows only the write bit counts (read-only).
void SetMode(const std::string& path, unsigned mode);

// Takes the write bits away from everything below `root` and `root` itself,
// or gives the owner's back.
void SetTreeWritable(const std::string& root, bool writable);

}  // namespace yhtest

#endif
