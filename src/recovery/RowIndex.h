#ifndef YH_RECOVERY_ROWINDEX_H
#define YH_RECOVERY_ROWINDEX_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

// Numbers (indexes of rows) by a 64-bit hash key. Most keys asked for are
// absent (live rows met against the few rows carved): a bit per slot of a
// filter answers those with one probe.
class RowIndex {
 public:
  void Add(uint64_t key, size_t number) { entries_.emplace_back(key, number); }

  // Once every number is added, before the first lookup.
  void Seal() {
    std::sort(entries_.begin(), entries_.end());
    size_t slots = 64;
    while (slots < 16 * entries_.size()) slots *= 2;
    filter_.assign(slots, false);
    for (const auto& entry : entries_) filter_[Slot(entry.first)] = true;
  }

  // Calls visit with every number added under `key`.
  template <class Visit>
  void ForEach(uint64_t key, Visit visit) const {
    if (!filter_[Slot(key)]) return;
    for (auto it = std::lower_bound(entries_.begin(), entries_.end(), std::make_pair(key, size_t{0}));
         it != entries_.end() && it->first == key; ++it) {
      visit(it->second);
    }
  }

 private:
  std::vector<std::pair<uint64_t, size_t>> entries_;
  std::vector<bool> filter_;

  size_t Slot(uint64_t key) const {
    return static_cast<size_t>((key * 0x9e3779b97f4a7c15ull) >> 20) & (filter_.size() - 1);
  }
};

#endif
