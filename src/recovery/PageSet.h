#ifndef YH_RECOVERY_PAGESET_H
#define YH_RECOVERY_PAGESET_H

#include <cstdint>
#include <vector>

// Page numbers met, one bit per page of the database: walks through trees,
// chains and lists stop at a page met twice.
class PageSet {
 public:
  explicit PageSet(uint32_t pageCount) : met_(static_cast<size_t>(pageCount) + 1) {}

  // False when the page was met before. A number past the database is never
  // kept: no page is read there.
  bool Insert(uint32_t number) {
    if (number >= met_.size()) return true;
    if (met_[number]) return false;
    met_[number] = true;
    return true;
  }

 private:
  std::vector<bool> met_;
};

#endif
