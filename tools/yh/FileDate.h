#ifndef YH_TOOL_FILEDATE_H
#define YH_TOOL_FILEDATE_H

#include <cstdint>
#include <optional>
#include <string>

namespace yh {

// The instant of a date as the library writes it, "YYYY-MM-DD hh:mm:ss" in
// local time; nothing for "" or any other text.
std::optional<int64_t> LocalDate(const std::string& text);

// Gives an open file the record's date as its modification (and access)
// time, so that a copy sorts by when its content was made; a file whose
// record has no date keeps the time it was written.
void DateFile(int fd, const std::string& date);

}  // namespace yh

#endif
