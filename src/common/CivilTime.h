#ifndef YH_COMMON_CIVILTIME_H
#define YH_COMMON_CIVILTIME_H

#include <cstdint>
#include <ctime>

// Calendar arithmetic of our own, in the proleptic Gregorian calendar, so
// that no date depends on what the C runtime can express (Windows' fails
// before 1970 and after 3000).

// The UTC fields of an instant (seconds since 1970), as gmtime_r gives them;
// false when the year does not fit the fields.
bool UtcFields(int64_t instant, std::tm* fields);

// The host's local fields of an instant under its zone rules for that
// instant, as localtime_r gives them; false when the host cannot tell.
bool HostLocalFields(int64_t instant, std::tm* fields);

// Days from 1970-01-01 to the given day (month 1 to 12).
int64_t DaysFromCivil(int64_t year, int month, int day);

#endif
