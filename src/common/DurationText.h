#ifndef YH_COMMON_DURATIONTEXT_H
#define YH_COMMON_DURATIONTEXT_H

#include <string>

// A stored count of seconds (whole or fractional text, or NULL) as
// "hh:mm:ss"; the fraction is dropped, and NULL, negative, non-numeric or
// non-finite values give "00:00:00".
std::string DurationText(const char* storedSeconds);

#endif
