#include "platform/Zone.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace platform {

namespace {

std::atomic<uint32_t> generation{1};

// localtime_r reads TZ and the zone file only when tzset runs, which costs
// more than the rest of a database row; it runs once per second of the clock
// instead, and at once when TZ changes. One record per thread: hosts may ask
// for two devices' contents at once. Trivially destructible, so that no
// destructor runs at thread exit.
struct ZoneState {
  bool read = false;
  time_t second = 0;
  bool hasTz = false;
  bool tzFits = false;
  char tz[256] = {};
  uint32_t generation = 0;
};

void Refresh() {
  thread_local ZoneState state;
  const time_t now = std::time(nullptr);
  const char* tz = std::getenv("TZ");
  const bool sameTz = state.hasTz == (tz != nullptr) && (!tz || (state.tzFits && std::strcmp(state.tz, tz) == 0));
  const uint32_t current = generation.load();
  if (state.read && state.second == now && sameTz && state.generation == current) return;
  tzset();
  if (!sameTz) generation.fetch_add(1);
  state.read = true;
  state.second = now;
  state.hasTz = tz != nullptr;
  state.tzFits = tz && std::strlen(tz) < sizeof state.tz;
  if (state.tzFits) std::strcpy(state.tz, tz);
  state.generation = generation.load();
}

// mktime of the fields once the zone is read anew; `summer` as tm_isdst.
std::optional<int64_t> Mktime(int year, int month, int day, int hour, int minute, int second, int summer) {
  Refresh();
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_hour = hour;
  fields.tm_min = minute;
  fields.tm_sec = second;
  fields.tm_isdst = summer;
  const time_t when = std::mktime(&fields);
  if (when == static_cast<time_t>(-1)) return std::nullopt;
  return static_cast<int64_t>(when);
}

}  // namespace

std::optional<ZoneReading> ZoneAt(int64_t instant) {
  Refresh();
  const time_t when = static_cast<time_t>(instant);
  std::tm local{};
  if (!localtime_r(&when, &local)) return std::nullopt;
  return ZoneReading{static_cast<int32_t>(local.tm_gmtoff), local.tm_isdst > 0};
}

std::optional<int64_t> StandardTimeInstant(int year, int month, int day, int hour) {
  return Mktime(year, month, day, hour, 0, 0, 0);
}

std::optional<int64_t> LocalInstant(int year, int month, int day, int hour, int minute, int second) {
  return Mktime(year, month, day, hour, minute, second, -1);
}

uint32_t ZoneGeneration() {
  Refresh();
  return generation.load();
}

void UseZoneForTesting(const std::string& name) {
  static const char* const original = std::getenv("TZ");
  static const std::string originalTz = original ? original : "";
  if (!name.empty()) {
    setenv("TZ", name.c_str(), 1);
  } else if (original) {
    setenv("TZ", originalTz.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
  generation.fetch_add(1);
}

}  // namespace platform
