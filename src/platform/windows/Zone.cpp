#include "platform/Zone.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <string>

namespace platform {

namespace {

std::atomic<uint32_t> generation{1};
std::mutex namedMutex;
bool named = false;  // by a test
DYNAMIC_TIME_ZONE_INFORMATION namedZone;
std::string seenTz;  // the TZ of the last look
bool tzNamed = false;
DYNAMIC_TIME_ZONE_INFORMATION tzZone;

// Seconds from 1601-01-01 (FILETIME's epoch) to 1970-01-01.
constexpr int64_t kFileTimeTo1970 = 11644473600LL;
// The Gregorian calendar repeats every 400 years, and so do zone rules read
// for a year outside what SYSTEMTIME holds (1601 to 30827).
constexpr int64_t kFourCenturies = 146097LL * 86400;
constexpr int64_t kFirst = -kFileTimeTo1970 + 86400 * 2;             // early 1601, with room for offsets
constexpr int64_t kLast = 910692730000LL - 86400 * 2 - kFileTimeTo1970;  // late 30827

bool FindZone(const std::string& name, DYNAMIC_TIME_ZONE_INFORMATION* found);

// A TZ that holds a zone's IANA name ("UTC", "Europe/Berlin") picks that zone,
// as it does on POSIX systems, so that a command gives the same dates on
// every system; anything else leaves the system's own zone in effect. Called
// with namedMutex held.
void NoticeTz() {
  const char* tz = std::getenv("TZ");
  const std::string now = tz ? tz : "";
  if (now == seenTz) return;
  seenTz = now;
  tzNamed = FindZone(now, &tzZone);
  generation.fetch_add(1);
}

bool ZoneInEffect(DYNAMIC_TIME_ZONE_INFORMATION* zone) {
  {
    const std::lock_guard<std::mutex> lock(namedMutex);
    NoticeTz();
    if (named || tzNamed) {
      *zone = named ? namedZone : tzZone;
      return true;
    }
  }
  return GetDynamicTimeZoneInformation(zone) != TIME_ZONE_ID_INVALID;
}

FILETIME FileTimeOf(int64_t instant) {
  const uint64_t ticks = static_cast<uint64_t>(instant + kFileTimeTo1970) * 10000000ULL;
  return FILETIME{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

int64_t SecondsOf(const FILETIME& time) {
  const uint64_t ticks = (static_cast<uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
  return static_cast<int64_t>(ticks / 10000000ULL) - kFileTimeTo1970;
}

// The Windows key names of the IANA zones that tests and TZ may name.
const wchar_t* WindowsKeyOf(const std::string& name) {
  static const struct {
    const char* iana;
    const wchar_t* windows;
  } kZones[] = {
      {"UTC", L"UTC"},
      {"Etc/UTC", L"UTC"},
      {"America/New_York", L"Eastern Standard Time"},
      {"Europe/Berlin", L"W. Europe Standard Time"},
      {"Europe/London", L"GMT Standard Time"},
      {"Australia/Sydney", L"AUS Eastern Standard Time"},
      {"Australia/Lord_Howe", L"Lord Howe Standard Time"},
      {"Asia/Tokyo", L"Tokyo Standard Time"},
  };
  for (const auto& zone : kZones) {
    if (name == zone.iana) return zone.windows;
  }
  return nullptr;
}

bool FindZone(const std::string& name, DYNAMIC_TIME_ZONE_INFORMATION* found) {
  const wchar_t* key = WindowsKeyOf(name);
  if (!key) return false;
  for (DWORD index = 0; EnumDynamicTimeZoneInformation(index, found) == ERROR_SUCCESS; ++index) {
    if (std::wstring(found->TimeZoneKeyName) == key) return true;
  }
  return false;
}

}  // namespace

std::optional<ZoneReading> ZoneAt(int64_t instant) {
  DYNAMIC_TIME_ZONE_INFORMATION zone;
  if (!ZoneInEffect(&zone)) return std::nullopt;
  if (instant < kFirst) instant += ((kFirst - instant) / kFourCenturies + 1) * kFourCenturies;
  if (instant > kLast) instant -= ((instant - kLast) / kFourCenturies + 1) * kFourCenturies;
  const FILETIME utcTime = FileTimeOf(instant);
  SYSTEMTIME utc;
  SYSTEMTIME local;
  FILETIME localTime;
  TIME_ZONE_INFORMATION rules;
  // The rules of the instant's year, then the conversion under them.
  if (!FileTimeToSystemTime(&utcTime, &utc) || !GetTimeZoneInformationForYear(utc.wYear, &zone, &rules) ||
      !SystemTimeToTzSpecificLocalTime(&rules, &utc, &local) || !SystemTimeToFileTime(&local, &localTime)) {
    return std::nullopt;
  }
  const int32_t offset = static_cast<int32_t>(SecondsOf(localTime) - instant);
  const int32_t standard = -static_cast<int32_t>(rules.Bias + rules.StandardBias) * 60;
  return ZoneReading{offset, offset != standard};
}

std::optional<int64_t> StandardTimeInstant(int year, int month, int day, int hour) {
  DYNAMIC_TIME_ZONE_INFORMATION zone;
  TIME_ZONE_INFORMATION rules;
  if (!ZoneInEffect(&zone) || year < 1601 || year > 30827 || !GetTimeZoneInformationForYear(year, &zone, &rules)) {
    return std::nullopt;
  }
  SYSTEMTIME fields{};
  fields.wYear = static_cast<WORD>(year);
  fields.wMonth = static_cast<WORD>(month);
  fields.wDay = static_cast<WORD>(day);
  FILETIME midnight;
  if (!SystemTimeToFileTime(&fields, &midnight)) return std::nullopt;
  return SecondsOf(midnight) + int64_t{hour} * 3600 + int64_t{rules.Bias + rules.StandardBias} * 60;
}

std::optional<int64_t> LocalInstant(int year, int month, int day, int hour, int minute, int second) {
  DYNAMIC_TIME_ZONE_INFORMATION zone;
  TIME_ZONE_INFORMATION rules;
  if (!ZoneInEffect(&zone) || year < 1601 || year > 30827 || month < 1 || month > 12 || day < 1 || day > 31 ||
      hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59 ||
      !GetTimeZoneInformationForYear(static_cast<USHORT>(year), &zone, &rules)) {
    return std::nullopt;
  }
  SYSTEMTIME local{};
  local.wYear = static_cast<WORD>(year);
  local.wMonth = static_cast<WORD>(month);
  local.wDay = static_cast<WORD>(day);
  local.wHour = static_cast<WORD>(hour);
  local.wMinute = static_cast<WORD>(minute);
  local.wSecond = static_cast<WORD>(second);
  SYSTEMTIME utc;
  FILETIME utcTime;
  if (!TzSpecificLocalTimeToSystemTime(&rules, &local, &utc) || !SystemTimeToFileTime(&utc, &utcTime)) {
    return std::nullopt;
  }
  return SecondsOf(utcTime);
}

uint32_t ZoneGeneration() {
  {
    const std::lock_guard<std::mutex> lock(namedMutex);
    NoticeTz();
  }
  return generation.load();
}

void UseZoneForTesting(const std::string& name) {
  DYNAMIC_TIME_ZONE_INFORMATION found{};
  const bool matched = FindZone(name, &found);
  {
    const std::lock_guard<std::mutex> lock(namedMutex);
    named = matched;
    if (matched) namedZone = found;
  }
  generation.fetch_add(1);
}

}  // namespace platform
