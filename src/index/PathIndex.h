#ifndef YH_INDEX_PATHINDEX_H
#define YH_INDEX_PATHINDEX_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Finds which of many texts (the device paths of a backup's index) contain a
// needle without searching them all. Each text is listed under the
// four-byte sequences that begin at its offsets 0, 4, 8 and so on (hashed
// into buckets). Where a text contains a needle of seven bytes or more, one
// of those offsets falls within the needle's first four bytes, so the text
// is listed under the needle's sequence at that distance from its start,
// or at any multiple of four further on. The candidates are the texts
// listed under the least-listed such sequence for each of the four
// distances, each confirmed by a plain search. Lists keep text order, so
// matches come in text order, as a scan would find them. A shorter needle
// is searched for in every text.
class PathIndex {
 public:
  // The texts must outlive the index.
  explicit PathIndex(std::vector<std::string_view> texts);

  // Visits, in ascending order, the position of every text that contains
  // `needle` (every text for an empty needle); stops when `visit` returns false.
  template <class Visitor>
  void ForEachContaining(std::string_view needle, Visitor visit) const;

 private:
  static constexpr size_t kSequence = 4;
  static constexpr size_t kStep = 4;
  static constexpr size_t kShortestIndexed = kSequence + kStep - 1;

  using List = std::pair<const uint32_t*, const uint32_t*>;

  size_t BucketOf(const char* sequence) const;
  List ListOf(size_t bucket) const;
  // For each distance from the needle's start, the least-listed list.
  std::array<List, kStep> CandidateLists(std::string_view needle) const;

  std::vector<std::string_view> texts_;
  unsigned bucketBits_ = 0;
  // Bucket b lists listed_[starts_[b]] up to before listed_[starts_[b + 1]],
  // in ascending order; a text may follow itself.
  std::vector<uint32_t> starts_;
  std::vector<uint32_t> listed_;
};

// The index of the paths of `records` (pointers to records whose accessor
// `path` gives the device path), by position in the list.
template <class Records, class Record>
std::unique_ptr<const PathIndex> IndexPathsOf(const Records& records, std::string_view (Record::*path)() const) {
  std::vector<std::string_view> paths;
  paths.reserve(records.size());
  for (const Record* record : records) paths.push_back((record->*path)());
  return std::make_unique<const PathIndex>(std::move(paths));
}

#include "index/PathIndex-inl.h"

#endif
