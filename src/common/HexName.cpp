#include "common/HexName.h"

#include <algorithm>

namespace {

int DigitValue(char c) { return c <= '9' ? c - '0' : c - 'a' + 10; }

}  // namespace

bool IsHexName(std::string_view text) {
  return text.size() == 2 * HexNameBytes().size() &&
         std::all_of(text.begin(), text.end(), [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); });
}

HexNameBytes HexNameToBytes(std::string_view text) {
  HexNameBytes bytes;
  for (size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<unsigned char>(DigitValue(text[2 * i]) << 4 | DigitValue(text[2 * i + 1]));
  }
  return bytes;
}

std::string HexNameOf(const HexNameBytes& bytes) {
  // Two digits a byte, as "%02x" would write them: a printf per byte costs
  // more than the hash that made them.
  static const char kDigits[] = "0123456789abcdef";
  std::string name;
  name.reserve(2 * bytes.size());
  for (unsigned char byte : bytes) {
    name += kDigits[byte >> 4];
    name += kDigits[byte & 0xF];
  }
  return name;
}
