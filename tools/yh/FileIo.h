#ifndef YH_TOOL_FILEIO_H
#define YH_TOOL_FILEIO_H

#include <cstdint>
#include <string>

namespace yh {

// Writes every byte; throws Failure naming `what` when writing fails.
void WriteAll(int fd, const std::string& bytes, const std::string& what);

// Copies what is left of `from` into `to` and returns the bytes copied;
// throws Failure naming `what` when reading or writing fails.
uint64_t CopyAll(int from, int to, const std::string& what);

}  // namespace yh

#endif
