#ifndef YH_TOOL_PLISTENTRIES_H
#define YH_TOOL_PLISTENTRIES_H

#include <plist/plist.h>

#include <cstdlib>
#include <string_view>

namespace yh {

// Calls visit(key, value) for each entry of a dictionary in order; the key
// lives for the call only (libplist hands out a copy, freed after it).
template <typename Visit>
void ForEachEntry(plist_t dict, Visit visit) {
  plist_dict_iter iter = nullptr;
  plist_dict_new_iter(dict, &iter);
  for (;;) {
    char* key = nullptr;
    plist_t value = nullptr;
    plist_dict_next_item(dict, iter, &key, &value);
    if (!value) break;
    visit(std::string_view(key ? key : ""), value);
    std::free(key);
  }
  std::free(iter);
}

}  // namespace yh

#endif
