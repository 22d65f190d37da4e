#include "index/TextArena.h"

#include <cstring>

std::string_view TextArena::Add(std::string_view text) {
  if (text.empty()) return std::string_view();
  if (text.size() > left_) {
    // A text larger than a block gets a block of its own; the open block
    // stays open for the texts after it.
    if (text.size() > kBlockSize / 4) {
      blocks_.emplace_back(new char[text.size()]);
      std::memcpy(blocks_.back().get(), text.data(), text.size());
      return std::string_view(blocks_.back().get(), text.size());
    }
    blocks_.emplace_back(new char[kBlockSize]);
    free_ = blocks_.back().get();
    left_ = kBlockSize;
  }
  char* stored = free_;
  std::memcpy(stored, text.data(), text.size());
  free_ += text.size();
  left_ -= text.size();
  return std::string_view(stored, text.size());
}
