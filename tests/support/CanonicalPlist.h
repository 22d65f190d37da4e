#ifndef YH_TESTS_SUPPORT_CANONICALPLIST_H
#define YH_TESTS_SUPPORT_CANONICALPLIST_H

#include <string>

namespace yhtest {

// The published form the independent decryption hashed property lists in:
// JSON text with sorted keys, ", " and ": " separators and UTF-8 left as it
// is, of a tree where a date is "date:" + ISO 8601 in whole seconds, data
// "data:" + hex, a real "real:" + %.6g, a UID (or a dictionary holding only
// CF$UID) "uid:" + number. Empty when libplist cannot read the bytes.
std::string CanonicalPlistJson(const std::string& bytes);

}  // namespace yhtest

#endif
