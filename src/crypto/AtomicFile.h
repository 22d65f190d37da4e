#ifndef YH_CRYPTO_ATOMICFILE_H
#define YH_CRYPTO_ATOMICFILE_H

#include <cstddef>
#include <functional>
#include <string>

// Writes `path` under a temporary name beside it (".partial" appended) and
// renames it into place only when `fill` succeeds, so that an interrupted run
// never leaves a file that looks whole. The file is private to the user
// (0600): it holds decrypted data. `fill` writes to the open descriptor.
bool WriteAtomically(const std::string& path, const std::function<bool(int fd)>& fill);

// The same for bytes in memory.
bool WriteBytesAtomically(const std::string& path, const std::string& bytes);

// Copies a plain file the same way.
bool CopyAtomically(const std::string& source, const std::string& path);

#endif
