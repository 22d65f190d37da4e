#ifndef YH_COMMON_FILEHELPERS_H
#define YH_COMMON_FILEHELPERS_H

#include <cstdint>
#include <optional>
#include <string>

// Non-zero when stat() finds the path; folders count as existing too.
int VQIsFileExists(const char* path);
// Non-zero when stat() finds a regular file there (a link to one counts).
// Readers open nothing else: opening a named pipe waits for a writer.
int VQIsRegularFile(const char* path);
// Size in bytes of what stat() finds at the path; 0 when nothing is there.
uint64_t VQGetFileSize(const char* path);
// The bytes of a regular file (a link to one counts); nothing for anything
// else, so that a named pipe never blocks, or when reading fails.
std::optional<std::string> ReadRegularFile(const std::string& path);
// Non-zero on a little-endian host.
int VQIsLittleEndian();

#endif
