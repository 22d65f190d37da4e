#include "TerminalText.h"

#include <cstdio>
#include <vector>

namespace yh {
namespace {

bool IsControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

bool IsContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

}  // namespace

std::string Printable(const std::string& text) {
  std::string shown;
  for (unsigned char c : text) {
    if (IsControl(c)) {
      char escape[5];
      std::snprintf(escape, sizeof escape, "\\x%02X", c);
      shown += escape;
    } else {
      shown += static_cast<char>(c);
    }
  }
  return shown;
}

size_t DisplayWidth(const std::string& text) {
  size_t width = 0;
  for (unsigned char c : text) width += IsContinuation(c) ? 0 : 1;
  return width;
}

std::string Cell(const std::string& text, size_t width) {
  std::vector<std::string> characters;
  for (unsigned char c : text) {
    if (characters.empty() || !IsContinuation(c)) characters.emplace_back();
    characters.back() += IsControl(c) ? ' ' : static_cast<char>(c);
  }
  const auto join = [&characters](size_t from, size_t to) {
    std::string joined;
    for (size_t i = from; i < to; ++i) joined += characters[i];
    return joined;
  };
  if (characters.size() <= width) return join(0, characters.size());
  if (width == 0) return "";
  // The middle goes: the ends of a path or an address tell the most.
  const size_t tail = (width - 1) / 2;
  const size_t head = width - 1 - tail;
  return join(0, head) + "…" + join(characters.size() - tail, characters.size());
}

}  // namespace yh
