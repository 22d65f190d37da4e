#include "common/DateHelpers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "common/CivilTime.h"
#include "platform/Zone.h"

namespace {

const size_t kDateSize = 24;
const size_t kDurationSize = 16;

// A date text as the helpers hand it out: at most kDateSize - 1 characters
// and a closing zero.
using DateBlock = char[kDateSize];

void WriteDate(const char* format, const std::tm& local, DateBlock text) {
  // Six ints fit the scratch text whatever their values; the result keeps
  // what fits the 24-byte block.
  char scratch[80];
  std::snprintf(scratch, sizeof scratch, format, local.tm_year + 1900, local.tm_mon + 1,
                local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
  const size_t size = std::min(std::strlen(scratch), kDateSize - 1);
  std::memcpy(text, scratch, size);
  text[size] = '\0';
}

char* CopyToMalloc(const DateBlock text) {
  char* copy = static_cast<char*>(std::calloc(kDateSize, 1));
  std::memcpy(copy, text, kDateSize);
  return copy;
}

// The 2001 epoch as the host sees it: local midnight of 2001-01-01 shifted
// by the present difference of the local and UTC hour of day, taken as it
// comes (-23..23), with summer time forced off. Deliberately not the
// constant 978307200: in summer time, or at the hours when the local and
// UTC dates differ, the texts move by the corresponding amount.
time_t HostEpoch2001(time_t now) {
  std::tm local{};
  std::tm utc{};
  HostLocalFields(now, &local);
  UtcFields(now, &utc);
  return static_cast<time_t>(platform::StandardTimeInstant(2001, 1, 1, local.tm_hour - utc.tm_hour).value_or(-1));
}

// The epoch depends on the clock's second and the zone's rules, and working
// it out costs more than a row: it is kept per thread until either changes.
// Trivially destructible, so that no destructor runs at thread exit.
struct Epoch2001 {
  bool read = false;
  time_t second = 0;
  uint32_t generation = 0;
  time_t epoch = 0;
};

time_t CurrentEpoch2001() {
  thread_local Epoch2001 kept;
  const time_t now = std::time(nullptr);
  const uint32_t generation = platform::ZoneGeneration();
  if (!kept.read || kept.second != now || kept.generation != generation) {
    kept = {true, now, generation, HostEpoch2001(now)};
  }
  return kept.epoch;
}

// The instant Convert2001GMTtoDate shows: earlier seconds count as the epoch.
time_t Instant2001(int32_t secondsSince2001) {
  const time_t offset = secondsSince2001 < 0 ? 0 : secondsSince2001;
  return CurrentEpoch2001() + offset;
}

// Writes `value` (0 or more) as `width` digits with leading zeros.
void PutDigits(char* out, int value, int width) {
  for (int at = width - 1; at >= 0; --at, value /= 10) out[at] = static_cast<char>('0' + value % 10);
}

// "%.4d-%.2d-%.2d %.2d:%.2d:%.2d" of the fields, digit by digit where the
// fields have their usual widths: snprintf costs more than the rest of the
// conversion, and a large request converts a date per row.
void WriteFields(const std::tm& local, DateBlock text) {
  const int year = local.tm_year + 1900;
  if (year < 0 || year > 9999) return WriteDate("%.4d-%.2d-%.2d %.2d:%.2d:%.2d", local, text);
  std::memcpy(text, "0000-00-00 00:00:00", 20);
  PutDigits(text, year, 4);
  PutDigits(text + 5, local.tm_mon + 1, 2);
  PutDigits(text + 8, local.tm_mday, 2);
  PutDigits(text + 11, local.tm_hour, 2);
  PutDigits(text + 14, local.tm_min, 2);
  PutDigits(text + 17, local.tm_sec, 2);
}

std::tm LocalFieldsOf(time_t when) {
  std::tm local{};
  LocalFields(when, &local);
  return local;
}

}  // namespace

bool LocalFields(time_t when, std::tm* local) { return HostLocalFields(when, local); }

std::string DateTextOf(const std::tm& fields) {
  DateBlock text = {};
  WriteFields(fields, text);
  return text;
}

char* FormatLocalDate(time_t when) {
  DateBlock text = {};
  WriteFields(LocalFieldsOf(when), text);
  return CopyToMalloc(text);
}

char* FormatWallClockDate(time_t when) {
  std::tm fields{};
  UtcFields(when, &fields);
  DateBlock text = {};
  WriteFields(fields, text);
  return CopyToMalloc(text);
}

std::string Date2001Text(int32_t secondsSince2001) { return DateTextOf(LocalFieldsOf(Instant2001(secondsSince2001))); }

std::string DurationOf(uint32_t seconds) {
  const uint32_t hours = seconds / 3600;
  int hourDigits = 2;
  for (uint32_t rest = hours / 100; rest > 0; rest /= 10) ++hourDigits;
  std::string text(hourDigits + 6, ':');
  PutDigits(text.data(), static_cast<int>(hours), hourDigits);
  PutDigits(text.data() + hourDigits + 1, static_cast<int>(seconds % 3600 / 60), 2);
  PutDigits(text.data() + hourDigits + 4, static_cast<int>(seconds % 60), 2);
  return text;
}

char* ConvertSecondsToTime(uint32_t seconds) {
  const std::string text = DurationOf(seconds);
  char* copy = static_cast<char*>(std::calloc(kDurationSize, 1));
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

char* FormatCurrentDate(const std::tm& local) {
  // The day is padded with a blank, unlike the other date texts.
  DateBlock text = {};
  WriteDate("%.4d-%.2d-%2d %.2d:%.2d:%.2d", local, text);
  return CopyToMalloc(text);
}

char* GetCurrentDate() {
  std::tm local{};
  LocalFields(std::time(nullptr), &local);
  return FormatCurrentDate(local);
}

char* Convert1900GMTDate(int32_t secondsSince1970) { return FormatLocalDate(secondsSince1970); }

char* Convert2001GMTtoDate(int32_t secondsSince2001) { return FormatLocalDate(Instant2001(secondsSince2001)); }
