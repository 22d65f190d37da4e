#include "FileDate.h"

#include <cstdio>

#include "platform/FileSystem.h"
#include "platform/Zone.h"

namespace yh {

std::optional<int64_t> LocalDate(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  char end = 0;
  if (std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d%c", &year, &month, &day, &hour, &minute, &second, &end) != 6) {
    return std::nullopt;
  }
  return platform::LocalInstant(year, month, day, hour, minute, second);
}

void DateFile(int fd, const std::string& date) {
  const std::optional<int64_t> instant = LocalDate(date);
  if (instant) platform::SetFileTimes(fd, *instant);
}

}  // namespace yh
