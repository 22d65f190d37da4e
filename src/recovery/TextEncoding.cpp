#include "recovery/TextEncoding.h"

#include <cstdint>
#include <cstring>

namespace {

void AppendUtf8(uint32_t code, std::string* out) {
  if (code < 0x80) {
    out->push_back(static_cast<char>(code));
  } else if (code < 0x800) {
    out->push_back(static_cast<char>(0xc0 | (code >> 6)));
    out->push_back(static_cast<char>(0x80 | (code & 0x3f)));
  } else if (code < 0x10000) {
    out->push_back(static_cast<char>(0xe0 | (code >> 12)));
    out->push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3f)));
    out->push_back(static_cast<char>(0x80 | (code & 0x3f)));
  } else {
    out->push_back(static_cast<char>(0xf0 | (code >> 18)));
    out->push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3f)));
    out->push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3f)));
    out->push_back(static_cast<char>(0x80 | (code & 0x3f)));
  }
}

// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool IsValidUtf8(std::string_view text) {
  size_t i = 0;
  while (i < text.size()) {
    // Most texts are ASCII: skip 8 bytes at a time while no high bit is set.
    uint64_t block = 0;
    if (i + 8 <= text.size() && (std::memcpy(&block, text.data() + i, 8), (block & 0x8080808080808080ull) == 0)) {
      i += 8;
      continue;
    }
    const uint8_t lead = static_cast<uint8_t>(text[i]);
    int extra = 0;
    uint32_t code = 0;
    uint32_t minimum = 0;
    if (lead < 0x80) {
      ++i;
      continue;
    } else if ((lead & 0xe0) == 0xc0) {
      extra = 1, code = lead & 0x1f, minimum = 0x80;
    } else if ((lead & 0xf0) == 0xe0) {
      extra = 2, code = lead & 0x0f, minimum = 0x800;
    } else if ((lead & 0xf8) == 0xf0) {
      extra = 3, code = lead & 0x07, minimum = 0x10000;
    } else {
      return false;
    }
    if (i + extra >= text.size()) return false;
    for (int k = 1; k <= extra; ++k) {
      const uint8_t next = static_cast<uint8_t>(text[i + k]);
      if ((next & 0xc0) != 0x80) return false;
      code = (code << 6) | (next & 0x3f);
    }
    if (code < minimum || code > 0x10ffff || (code >= 0xd800 && code <= 0xdfff)) return false;
    i += extra + 1;
  }
  return true;
}

bool DecodeUtf16(std::string_view stored, bool bigEndian, std::string* utf8) {
  if (stored.size() % 2 != 0) return false;
  auto unit = [&](size_t i) {
    const uint8_t a = static_cast<uint8_t>(stored[i]);
    const uint8_t b = static_cast<uint8_t>(stored[i + 1]);
    return bigEndian ? static_cast<uint32_t>(a << 8 | b) : static_cast<uint32_t>(b << 8 | a);
  };
  utf8->clear();
  for (size_t i = 0; i < stored.size(); i += 2) {
    uint32_t code = unit(i);
    if (code >= 0xdc00 && code <= 0xdfff) return false;
    if (code >= 0xd800 && code <= 0xdbff) {
      if (i + 3 >= stored.size()) return false;
      const uint32_t low = unit(i + 2);
      if (low < 0xdc00 || low > 0xdfff) return false;
      code = 0x10000 + ((code - 0xd800) << 10) + (low - 0xdc00);
      i += 2;
    }
    AppendUtf8(code, utf8);
  }
  return true;
}

}  // namespace

bool DecodeText(std::string_view stored, TextEncoding encoding, std::string* utf8) {
  if (encoding == TextEncoding::Utf8) {
    if (!IsValidUtf8(stored)) return false;
    utf8->assign(stored);
    return true;
  }
  return DecodeUtf16(stored, encoding == TextEncoding::Utf16be, utf8);
}
