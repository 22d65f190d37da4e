#ifndef YH_INDEX_TEXTARENA_H
#define YH_INDEX_TEXTARENA_H

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

// Texts stored one after another in large blocks and kept until the arena
// dies: an index's quarter of a million paths cost their bytes only, with
// no allocation, header or capacity of their own.
class TextArena {
 public:
  // A view of the stored copy, valid as long as the arena.
  std::string_view Add(std::string_view text);

 private:
  static constexpr size_t kBlockSize = size_t{1} << 20;

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* free_ = nullptr;
  size_t left_ = 0;
};

#endif
