#ifndef YH_INDEX_SHAREDTEXTS_H
#define YH_INDEX_SHAREDTEXTS_H

#include <string>
#include <string_view>
#include <unordered_set>

#include "index/TextArena.h"

// Each distinct text stored once, with a zero byte after it, so that a
// record holds a single pointer to it: the records of an index name a few
// hundred domains among them.
class SharedTexts {
 public:
  // The stored copy equal to `text`, which holds no zero byte; valid as
  // long as this object.
  const char* Intern(std::string_view text);

 private:
  TextArena arena_;
  std::unordered_set<std::string_view> known_;  // views of arena_, without the zero byte
  std::string_view last_;  // records of one domain come together
};

#endif
