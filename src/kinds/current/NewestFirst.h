#ifndef YH_KINDS_CURRENT_NEWESTFIRST_H
#define YH_KINDS_CURRENT_NEWESTFIRST_H

#include <cstdint>
#include <optional>
#include <vector>

#include "common/SortByMoving.h"

namespace current {

// The order of the current kinds' answers: whether a record of instant `a`
// (seconds since 1970) comes before one of `b`, newest first, records
// without an instant last. A stable sort keeps equal ones in their order.
inline bool Newer(const std::optional<int64_t>& a, const std::optional<int64_t>& b) {
  return a.value_or(INT64_MIN) > b.value_or(INT64_MIN);
}

// `records` in that order by the instant each holds in `instant`, equal
// ones in the order given.
template <class Record>
std::vector<Record> NewestFirst(std::vector<Record> records, std::optional<int64_t> Record::*instant) {
  return StableSortedByMoving(std::move(records),
                              [instant](const Record& a, const Record& b) { return Newer(a.*instant, b.*instant); });
}

}  // namespace current

#endif
