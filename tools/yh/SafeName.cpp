#include "SafeName.h"

#include <utility>

#include "platform/FileSystem.h"

namespace yh {
namespace {

// Longer endings after the last dot are not taken for an extension.
constexpr size_t kMaxExtensionBytes = 16;

// Bytes in the well-formed UTF-8 sequence at `at`; 0 when there is none.
size_t SequenceLength(const std::string& text, size_t at) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at);
  if (lead < 0x80) return 1;
  size_t length = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;  // no surrogates
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  if (at + length > text.size()) return 0;
  if (byte(at + 1) < low || byte(at + 1) > high) return 0;
  for (size_t i = 2; i < length; ++i) {
    if (byte(at + i) < 0x80 || byte(at + i) > 0xBF) return 0;
  }
  return length;
}

// C0 and C1 control characters, DEL, and the path separators.
bool IsUnsafe(const std::string& sequence) {
  const unsigned char first = sequence[0];
  if (sequence.size() == 1) return first < 0x20 || first == 0x7F || first == '/' || first == '\\';
  return sequence.size() == 2 && first == 0xC2 && static_cast<unsigned char>(sequence[1]) < 0xA0;
}

std::pair<std::string, std::string> SplitExtension(const std::string& name) {
  const size_t dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0 || name.size() - dot > kMaxExtensionBytes) return {name, ""};
  return {name.substr(0, dot), name.substr(dot)};
}

// The longest start of `text` of at most `bytes` bytes that ends between
// two UTF-8 sequences.
std::string CutAt(const std::string& text, size_t bytes) {
  if (text.size() <= bytes) return text;
  size_t end = bytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end);
}

}  // namespace

std::string SafeFileName(const std::string& text, const std::string& fallback) {
  std::string name;
  for (size_t at = 0; at < text.size();) {
    const size_t length = SequenceLength(text, at);
    const std::string sequence = text.substr(at, length ? length : 1);
    name += !length || IsUnsafe(sequence) ? "_" : sequence;
    at += sequence.size();
  }
  for (size_t i = 0; i < name.size() && name[i] == '.'; ++i) name[i] = '_';
  if (name.empty()) return fallback;
  if (name.size() <= kMaxNameBytes) return platform::SystemFileName(name);
  const auto [stem, extension] = SplitExtension(name);
  return platform::SystemFileName(CutAt(stem, kMaxNameBytes - extension.size()) + extension);
}

std::string NumberedName(const std::string& name, int number) {
  const auto [stem, extension] = SplitExtension(name);
  return stem + "-" + std::to_string(number) + extension;
}

}  // namespace yh
