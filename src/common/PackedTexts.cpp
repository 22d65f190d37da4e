#include "common/PackedTexts.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <vector>

namespace {

// The block starts with the width in bytes (1, 2 or 4) of the count and of
// every offset that follow it: records' texts are mostly short, and a
// one-byte offset keeps a call's eight texts from costing more in offsets
// than in letters.
size_t WidthFor(size_t largest) {
  return largest <= UINT8_MAX ? 1 : largest <= UINT16_MAX ? 2 : 4;
}

uint32_t ReadNumber(const char* at, size_t width) {
  uint32_t value = 0;
  for (size_t byte = 0; byte < width; ++byte) value |= uint32_t{static_cast<unsigned char>(at[byte])} << (8 * byte);
  return value;
}

void WriteNumber(char* at, size_t width, uint32_t value) {
  for (size_t byte = 0; byte < width; ++byte) at[byte] = static_cast<char>(value >> (8 * byte));
}

}  // namespace

PackedTexts::PackedTexts(const std::string_view* texts, size_t count) {
  if (count == 0) return;
  size_t bytes = 0;
  for (size_t at = 0; at < count; ++at) {
    if (!texts[at].empty()) bytes += texts[at].size() + 1;
  }
  if (count >= std::numeric_limits<uint32_t>::max() || bytes > std::numeric_limits<uint32_t>::max()) {
    throw std::length_error("texts too long to pack");
  }
  const size_t width = WidthFor(std::max(count, bytes));
  const size_t header = 1 + width * (count + 1);
  block_.reset(new char[header + bytes]);
  block_[0] = static_cast<char>(width);
  WriteNumber(block_.get() + 1, width, static_cast<uint32_t>(count));
  char* out = block_.get() + header;
  uint32_t end = 0;
  for (size_t at = 0; at < count; ++at) {
    const std::string_view text = texts[at];
    if (!text.empty()) {
      std::memcpy(out + end, text.data(), text.size());
      out[end + text.size()] = '\0';
      end += static_cast<uint32_t>(text.size() + 1);
    }
    WriteNumber(block_.get() + 1 + width * (at + 1), width, end);
  }
}

size_t PackedTexts::Width() const { return static_cast<size_t>(block_[0]); }

size_t PackedTexts::Count() const { return block_ ? ReadNumber(block_.get() + 1, Width()) : 0; }

uint32_t PackedTexts::End(size_t at) const { return ReadNumber(block_.get() + 1 + Width() * (at + 1), Width()); }

const char* PackedTexts::Bytes() const { return block_.get() + 1 + Width() * (Count() + 1); }

std::string_view PackedTexts::View(size_t at) const {
  if (at >= Count()) return {};
  const uint32_t begin = at == 0 ? 0 : End(at - 1);
  const uint32_t end = End(at);
  // A non-empty text's span ends with its closing zero byte.
  return begin == end ? std::string_view() : std::string_view(Bytes() + begin, end - begin - 1);
}

const char* PackedTexts::AsCString(size_t at) const {
  const std::string_view text = View(at);
  return text.empty() ? "" : text.data();
}

void PackedTexts::Replace(size_t at, std::string_view text) {
  const size_t count = Count();
  if (at >= count) throw std::out_of_range("no such packed text");
  std::vector<std::string_view> texts(count);
  for (size_t each = 0; each < count; ++each) texts[each] = each == at ? text : View(each);
  // The views may point into the old block, which lives until the new one is built.
  *this = PackedTexts(texts.data(), count);
}
