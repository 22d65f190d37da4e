#ifndef YH_TOOL_SAFENAME_H
#define YH_TOOL_SAFENAME_H

#include <cstddef>
#include <string>

namespace yh {

// Longest name made, in bytes: below the usual 255-byte limit with room for
// a numeric suffix.
constexpr size_t kMaxNameBytes = 200;

// A file name made from untrusted text: one path component ("/" and "\"
// become "_"), no control characters, no bytes that are not UTF-8, not
// hidden and never "." or ".." (leading dots become "_"), at most
// kMaxNameBytes bytes with a short extension kept, and one the system takes
// as it is (platform::SystemFileName). `fallback` when the text is empty.
std::string SafeFileName(const std::string& text, const std::string& fallback);

// "stem-N.ext": the N-th other name for a file whose name is taken.
std::string NumberedName(const std::string& name, int number);

}  // namespace yh

#endif
