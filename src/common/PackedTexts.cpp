#include "common/PackedTexts.h"

#include <cstring>
#include <limits>
#include <stdexcept>
#include <vector>

namespace {

uint32_t ReadOffset(const char* at) {
  uint32_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

void WriteOffset(char* at, uint32_t value) { std::memcpy(at, &value, sizeof value); }

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
  const size_t header = sizeof(uint32_t) * (count + 1);
  block_.reset(new char[header + bytes]);
  WriteOffset(block_.get(), static_cast<uint32_t>(count));
  char* out = block_.get() + header;
  uint32_t end = 0;
  for (size_t at = 0; at < count; ++at) {
    const std::string_view text = texts[at];
    if (!text.empty()) {
      std::memcpy(out + end, text.data(), text.size());
      out[end + text.size()] = '\0';
      end += static_cast<uint32_t>(text.size() + 1);
    }
    WriteOffset(block_.get() + sizeof(uint32_t) * (at + 1), end);
  }
}

size_t PackedTexts::Count() const { return block_ ? ReadOffset(block_.get()) : 0; }

uint32_t PackedTexts::End(size_t at) const { return ReadOffset(block_.get() + sizeof(uint32_t) * (at + 1)); }

const char* PackedTexts::Bytes() const { return block_.get() + sizeof(uint32_t) * (Count() + 1); }

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
