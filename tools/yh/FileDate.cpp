#include "FileDate.h"

#include <sys/stat.h>

#include <cstdio>

namespace yh {

std::optional<std::time_t> LocalDate(const std::string& text) {
  std::tm local{};
  char end = 0;
  if (std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d%c", &local.tm_year, &local.tm_mon, &local.tm_mday,
                  &local.tm_hour, &local.tm_min, &local.tm_sec, &end) != 6) {
    return std::nullopt;
  }
  local.tm_year -= 1900;
  local.tm_mon -= 1;
  local.tm_isdst = -1;  // summer time as the zone's rules have it for that day
  const std::time_t instant = std::mktime(&local);
  if (instant == static_cast<std::time_t>(-1)) return std::nullopt;
  return instant;
}

void DateFile(int fd, const std::string& date) {
  const std::optional<std::time_t> instant = LocalDate(date);
  if (!instant) return;
  const timespec times[2] = {{*instant, 0}, {*instant, 0}};
  ::futimens(fd, times);
}

}  // namespace yh
