#include "common/CivilTime.h"

#include <climits>

#include "platform/Zone.h"

namespace {

constexpr int64_t kDay = 86400;

int64_t FloorDiv(int64_t value, int64_t by) { return value / by - (value % by != 0 && (value < 0) != (by < 0)); }

}  // namespace

int64_t DaysFromCivil(int64_t year, int month, int day) {
  // Counted in eras of 400 years from 0000-03-01, so that February's leap
  // day ends a year.
  year -= month <= 2;
  const int64_t era = FloorDiv(year, 400);
  const int64_t yearOfEra = year - era * 400;
  const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

bool UtcFields(int64_t instant, std::tm* fields) {
  const int64_t days = FloorDiv(instant, kDay);
  const int64_t second = instant - days * kDay;
  const int64_t shifted = days + 719468;
  const int64_t era = FloorDiv(shifted, 146097);
  const int64_t dayOfEra = shifted - era * 146097;
  const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int64_t monthIndex = (5 * dayOfYear + 2) / 153;
  const int day = static_cast<int>(dayOfYear - (153 * monthIndex + 2) / 5 + 1);
  const int month = static_cast<int>(monthIndex < 10 ? monthIndex + 3 : monthIndex - 9);
  const int64_t year = yearOfEra + era * 400 + (month <= 2);
  if (year - 1900 > INT_MAX || year - 1900 < INT_MIN) return false;
  *fields = std::tm{};
  fields->tm_year = static_cast<int>(year - 1900);
  fields->tm_mon = month - 1;
  fields->tm_mday = day;
  fields->tm_hour = static_cast<int>(second / 3600);
  fields->tm_min = static_cast<int>(second % 3600 / 60);
  fields->tm_sec = static_cast<int>(second % 60);
  fields->tm_wday = static_cast<int>(FloorDiv(days + 4, 7) * -7 + days + 4);
  fields->tm_yday = static_cast<int>(days - DaysFromCivil(year, 1, 1));
  return true;
}

bool HostLocalFields(int64_t instant, std::tm* fields) {
  const std::optional<platform::ZoneReading> zone = platform::ZoneAt(instant);
  if (!zone || !UtcFields(instant + zone->offset, fields)) return false;
  fields->tm_isdst = zone->summer ? 1 : 0;
  return true;
}
