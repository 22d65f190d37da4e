#ifndef YH_COMMON_HEXNAME_H
#define YH_COMMON_HEXNAME_H

#include <array>
#include <string>
#include <string_view>

// A stored file's name of 40 lower-case hexadecimal digits (a SHA-1) kept
// as its 20 bytes.
using HexNameBytes = std::array<unsigned char, 20>;

// Whether `text` is such a name; only then does it come back unchanged
// from its bytes.
bool IsHexName(std::string_view text);

// The bytes of a name for which IsHexName holds.
HexNameBytes HexNameToBytes(std::string_view text);

// The 40 lower-case digits of `bytes`.
std::string HexNameOf(const HexNameBytes& bytes);

#endif
