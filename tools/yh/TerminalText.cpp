#include "TerminalText.h"

#include <cstdio>

namespace yh {
namespace {

bool IsControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

bool IsContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

// A character starts at the first byte and at each byte that continues none.
bool StartsCharacter(const std::string& text, size_t at) {
  return at == 0 || !IsContinuation(static_cast<unsigned char>(text[at]));
}

// Where the character numbered `index` starts; the text's size past the last.
size_t CharacterStart(const std::string& text, size_t index) {
  size_t seen = 0;
  for (size_t at = 0; at < text.size(); ++at) {
    if (StartsCharacter(text, at) && seen++ == index) return at;
  }
  return text.size();
}

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

size_t CutCell(std::string& text, size_t width) {
  // One pass for the blanks, the characters and the shown width: most cells
  // are short and stay as they are.
  size_t characters = 0;
  size_t shownWidth = 0;
  for (size_t at = 0; at < text.size(); ++at) {
    const auto c = static_cast<unsigned char>(text[at]);
    if (IsControl(c)) text[at] = ' ';
    characters += StartsCharacter(text, at) ? 1 : 0;
    shownWidth += IsContinuation(c) ? 0 : 1;
  }
  if (characters <= width) return shownWidth;
  if (width == 0) {
    text.clear();
    return 0;
  }
  // The middle goes: the ends of a path or an address tell the most.
  const size_t tail = (width - 1) / 2;
  const size_t head = width - 1 - tail;
  text = text.substr(0, CharacterStart(text, head)) + "…" + text.substr(CharacterStart(text, characters - tail));
  return DisplayWidth(text);
}

std::string Cell(std::string text, size_t width) {
  CutCell(text, width);
  return text;
}

}  // namespace yh
