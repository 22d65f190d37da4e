#include "common/DateHelpers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const size_t kDateSize = 24;
const size_t kDurationSize = 16;

char* FormatDate(const char* format, const std::tm& local) {
  // Six ints fit the scratch text whatever their values; the result keeps
  // what fits the 24-byte block.
  char scratch[80];
  std::snprintf(scratch, sizeof scratch, format, local.tm_year + 1900, local.tm_mon + 1,
                local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
  char* text = static_cast<char*>(std::calloc(kDateSize, 1));
  std::memcpy(text, scratch, std::min(std::strlen(scratch), kDateSize - 1));
  return text;
}

char* FormatLocalDate(time_t when) {
  return FormatDate("%.4d-%.2d-%.2d %.2d:%.2d:%.2d", *std::localtime(&when));
}

}  // namespace

char* ConvertSecondsToTime(uint32_t seconds) {
  char* text = static_cast<char*>(std::calloc(kDurationSize, 1));
  std::snprintf(text, kDurationSize, "%.2d:%.2d:%.2d", static_cast<int>(seconds / 3600),
                static_cast<int>(seconds % 3600 / 60), static_cast<int>(seconds % 60));
  return text;
}

char* FormatCurrentDate(const std::tm& local) {
  // The day is padded with a blank, unlike the other date texts.
  return FormatDate("%.4d-%.2d-%2d %.2d:%.2d:%.2d", local);
}

char* GetCurrentDate() {
  const time_t now = std::time(nullptr);
  return FormatCurrentDate(*std::localtime(&now));
}

char* Convert1900GMTDate(int32_t secondsSince1970) { return FormatLocalDate(secondsSince1970); }

char* Convert2001GMTtoDate(int32_t secondsSince2001) {
  const time_t offset = secondsSince2001 < 0 ? 0 : secondsSince2001;
  // The 2001 epoch as the host sees it: local midnight of 2001-01-01 shifted
  // by the present difference of the local and UTC hour of day, taken as it
  // comes (-23..23), with summer time forced off. Deliberately not the
  // constant 978307200: in summer time, or at the hours when the local and
  // UTC dates differ, the texts move by the corresponding amount.
  const time_t now = std::time(nullptr);
  const int localHour = std::localtime(&now)->tm_hour;
  const int utcHour = std::gmtime(&now)->tm_hour;
  std::tm epoch{};
  epoch.tm_year = 101;
  epoch.tm_mon = 0;
  epoch.tm_mday = 1;
  epoch.tm_hour = localHour - utcHour;
  epoch.tm_isdst = 0;
  return FormatLocalDate(std::mktime(&epoch) + offset);
}
