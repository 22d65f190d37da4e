#ifndef YH_PLATFORM_ZONE_H
#define YH_PLATFORM_ZONE_H

#include <cstdint>
#include <optional>
#include <string>

// The host's time zone rules, read through the system: the C runtime on
// POSIX systems, the Win32 time-zone functions on Windows. Calendar
// arithmetic itself is ours (common/CivilTime.h).
namespace platform {

struct ZoneReading {
  int32_t offset;  // seconds east of UTC
  bool summer;     // summer (daylight saving) time in effect
};

// The zone's offset at an instant (seconds since 1970) under the rules for
// that instant; nothing when the host cannot tell.
std::optional<ZoneReading> ZoneAt(int64_t instant);

// The instant at which the local clock of the zone's standard time (summer
// time taken as off) reads the given fields, as mktime gives it for fields
// marked "no summer time"; nothing when the host cannot tell.
std::optional<int64_t> StandardTimeInstant(int year, int month, int day, int hour);

// The instant at which the zone's local clock reads the given fields (month
// 1 to 12), summer time as the zone's rules have it for that day, as mktime
// gives it for fields that leave summer time open; nothing when the host
// cannot tell.
std::optional<int64_t> LocalInstant(int year, int month, int day, int hour, int minute, int second);

// Changes whenever the zone is read anew (TZ changed, a test named a zone),
// so that values worked out from the rules can be kept until then. The rules
// are read again at most once per second of the clock, and at once when the
// zone is named anew: a zone file replaced while a request runs is taken up
// within a second.
uint32_t ZoneGeneration();

// Tests: every later conversion uses the zone of this IANA name ("UTC",
// "America/New_York", "Europe/Berlin", "Australia/Lord_Howe", ...); an empty
// name goes back to the host's own zone.
void UseZoneForTesting(const std::string& name);

}  // namespace platform

#endif
