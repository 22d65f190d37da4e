#ifndef YH_TOOL_FILEIO_H
#define YH_TOOL_FILEIO_H

#include <cstdint>
#include <string>
#include <string_view>

namespace yh {

// Writes every byte; throws Failure naming `what` when writing fails.
void WriteAll(int fd, std::string_view bytes, const std::string& what);

// Every byte from where `fd` stands to its end; what was read before an
// error.
std::string ReadAll(int fd);

// Copies the whole regular file `from` into the empty file `to`, leaving its
// holes unwritten, and returns its size; throws Failure naming `what` when
// reading or writing fails.
uint64_t CopyFile(int from, int to, const std::string& what);

}  // namespace yh

#endif
