#ifndef YH_KINDS_COLUMNDATE_H
#define YH_KINDS_COLUMNDATE_H

#include <string>

// Most device databases keep dates as seconds since 2001-01-01, handed over
// as decimal text; only the integer part counts.

// The local date text of the seconds; a NULL text counts as 0 seconds.
std::string DateText2001(const char* seconds);

// As DateText2001, but a NULL column gives the present local date instead.
std::string DateText2001OrNow(const char* seconds);

#endif
