#ifndef YH_KINDS_CURRENT_SAFARIENTRY_H
#define YH_KINDS_CURRENT_SAFARIENTRY_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace current {

// One visited page or bookmark, with its dates already as local texts.
struct SafariEntry {
  struct Visit {
    std::string date;
    std::string title;
    std::optional<int64_t> instant;  // seconds since 1970, for the order
  };

  std::string url;
  bool bookmark = false;
  std::string title;
  std::string date;                // the last visit, or when a bookmark last changed
  std::optional<int64_t> instant;  // seconds since 1970, for the order
  int64_t visitCount = 0;
  std::vector<Visit> visits;  // newest first
};

}  // namespace current

#endif
