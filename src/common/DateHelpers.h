#ifndef YH_COMMON_DATEHELPERS_H
#define YH_COMMON_DATEHELPERS_H

#include <cstdint>
#include <ctime>
#include <string>

// Each returns a new malloc block that the caller frees. Calendar fields are
// in the host's local time zone.
char* ConvertSecondsToTime(uint32_t seconds);
char* GetCurrentDate();
char* Convert1900GMTDate(int32_t secondsSince1970);
char* Convert2001GMTtoDate(int32_t secondsSince2001);

// The local text "YYYY-MM-DD hh:mm:ss" of an instant, under the host's zone
// rules for that instant.
char* FormatLocalDate(time_t when);

// The local fields of an instant under the host's present zone rules;
// false when the host cannot express it.
bool LocalFields(time_t when, std::tm* local);

// FormatLocalDate's text of the fields, as a string: rows convert a date
// each, and the malloc block would only be copied and freed.
std::string DateTextOf(const std::tm& fields);

// ConvertSecondsToTime's text "hh:mm:ss" (hours as wide as they need) as a
// string, written digit by digit: calls and memos convert one per row.
std::string DurationOf(uint32_t seconds);

// Convert2001GMTtoDate's text as a string.
std::string Date2001Text(int32_t secondsSince2001);

// The same text of the instant's UTC fields: the clock reading of a floating
// time, which devices store as if it were UTC.
char* FormatWallClockDate(time_t when);

// GetCurrentDate's text for the given local fields, with its blank-padded
// day; kept apart so that the day padding can be checked on any date.
char* FormatCurrentDate(const std::tm& local);

#endif
