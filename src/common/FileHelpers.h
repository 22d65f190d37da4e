#ifndef YH_COMMON_FILEHELPERS_H
#define YH_COMMON_FILEHELPERS_H

#include <cstdint>

// Non-zero when stat() finds the path; folders count as existing too.
int VQIsFileExists(const char* path);
// Non-zero when stat() finds a regular file there (a link to one counts).
// Readers open nothing else: opening a named pipe waits for a writer.
int VQIsRegularFile(const char* path);
// Size in bytes of what stat() finds at the path; 0 when nothing is there.
uint64_t VQGetFileSize(const char* path);
// Non-zero on a little-endian host.
int VQIsLittleEndian();

#endif
