#ifndef YH_COMMON_PLISTSAFETY_H
#define YH_COMMON_PLISTSAFETY_H

#include <cstddef>

// Whether libplist can be given these property-list bytes without crashing
// or running away. It recurses once per nesting level (parsing a binary
// list, freeing any tree), so a deeply nested file overflows the stack; it
// copies an object once per reference to it, so a binary list of a few
// hundred bytes whose arrays refer twice to the next one grows into billions
// of nodes; and it aborts on reading a binary dictionary key written in
// UTF-16 that holds a zero unit. Refused: nesting deeper than 512 levels,
// binary lists of more than 4,000,000 objects or that would grow past
// 4,000,000 nodes, and such keys. No device writes any of these.
bool IsSafeForLibplist(const char* bytes, size_t length);

// Whether a string libplist reads from these bytes may hold a zero byte:
// false only for a sound binary list whose every object is of a known type
// and whose strings (ASCII or UTF-16) have no zero in them. The parsed tree
// need then not be walked for such strings, which for a long history costs
// as much as parsing it.
bool MayHoldZeroInString(const char* bytes, size_t length);

#endif
