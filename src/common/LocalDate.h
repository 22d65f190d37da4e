#ifndef YH_COMMON_LOCALDATE_H
#define YH_COMMON_LOCALDATE_H

#include <cstdint>
#include <optional>
#include <string>

// How a device database counts time. ByMagnitude: a column that holds
// seconds since 2001 on some generations and Unix seconds on others; counts
// from 978,307,200 on (2001 in Unix seconds, 2032 counted from 2001) are
// Unix seconds, smaller ones count from 2001.
enum class TimeBase { Unix, Since2001, ByMagnitude };

// The true local time ("YYYY-MM-DD hh:mm:ss") of a stored instant under the
// host's zone rules for that instant. The value is whole or fractional
// seconds (the fraction is dropped), or nanoseconds, which newer databases
// store in the same columns: any value too large to be seconds (more than
// 3e12, some 95,000 years) is taken as nanoseconds. NULL, 0 (no date, as
// devices store it), an empty text, a text that is not a number, and an
// instant the host cannot express give "".
std::string LocalDateText(const char* stored, TimeBase base);

// The clock reading of a floating time (an all-day or floating calendar
// entry), which devices store as if it were UTC: the same text in every zone.
// Read by the same rules as LocalDateText.
std::string FloatingDateText(const char* stored, TimeBase base);

// LocalDateText's text together with the stored instant as whole seconds
// since 1970 (for ordering), from one reading of the stored value; the
// instant is nothing where the text is "".
struct LocalDate {
  std::string text;
  std::optional<int64_t> instant;
};
LocalDate LocalDateOf(const char* stored, TimeBase base);

#endif
