#ifndef YH_COMMON_PACKEDTEXTS_H
#define YH_COMMON_PACKEDTEXTS_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string_view>

// The short texts of one record in one heap block, so that a large backup's
// records do not each hold a string object per field: the block is the
// number of texts, the end offset of each (both as wide as the block needs),
// then the bytes of every non-empty text with a closing zero byte. An empty
// text costs its offset alone.
// Texts keep any zero bytes they hold; AsCString shows them cut at the first.
class PackedTexts {
 public:
  // No texts at all; every index reads as empty.
  PackedTexts() = default;
  PackedTexts(const std::string_view* texts, size_t count);
  PackedTexts(std::initializer_list<std::string_view> texts) : PackedTexts(texts.begin(), texts.size()) {}

  size_t Count() const;
  // Empty for an index past the last text.
  std::string_view View(size_t at) const;
  // NUL-terminated, for the C interfaces; "" for an empty text.
  const char* AsCString(size_t at) const;
  // Asks the processor for the block ahead of its first reading: records
  // read one after another lie apart on the heap.
  void Prefetch() const { __builtin_prefetch(block_.get()); }
  // Builds a new block with text `at` replaced (the others unchanged).
  void Replace(size_t at, std::string_view text);

 private:
  size_t Width() const;
  uint32_t End(size_t at) const;
  const char* Bytes() const;

  std::unique_ptr<char[]> block_;
};

#endif
