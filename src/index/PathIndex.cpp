#include "index/PathIndex.h"

#include <cstring>

namespace {

// About one bucket for every four listed sequences keeps unrelated
// sequences from sharing lists, at a quarter of the lists' own size.
constexpr size_t kListedPerBucket = 4;
constexpr unsigned kMinBucketBits = 8;
constexpr unsigned kMaxBucketBits = 22;

}  // namespace

PathIndex::PathIndex(std::vector<std::string_view> texts) : texts_(std::move(texts)) {
  size_t sequences = 0;
  for (const std::string_view text : texts_)
    sequences += text.size() < kSequence ? 0 : (text.size() - kSequence) / kStep + 1;
  bucketBits_ = kMinBucketBits;
  while (bucketBits_ < kMaxBucketBits && (size_t{1} << bucketBits_) * kListedPerBucket < sequences) ++bucketBits_;
  const size_t buckets = size_t{1} << bucketBits_;

  // The bucket of every listed sequence, text by text, then counted and
  // listed in text order. A text whose sequences share a bucket is listed
  // there more than once, next to itself; the search skips the repeats.
  std::vector<uint32_t> found;
  std::vector<size_t> foundStarts;
  found.reserve(sequences);
  foundStarts.reserve(texts_.size() + 1);
  foundStarts.push_back(0);
  for (const std::string_view text : texts_) {
    for (size_t at = 0; at + kSequence <= text.size(); at += kStep) {
      found.push_back(static_cast<uint32_t>(BucketOf(text.data() + at)));
    }
    foundStarts.push_back(found.size());
  }
  starts_.assign(buckets + 1, 0);
  for (const uint32_t bucket : found) ++starts_[bucket + 1];
  for (size_t bucket = 0; bucket < buckets; ++bucket) starts_[bucket + 1] += starts_[bucket];
  std::vector<uint32_t> next(starts_.begin(), starts_.end() - 1);
  listed_.resize(found.size());
  for (uint32_t position = 0; position < texts_.size(); ++position) {
    for (size_t at = foundStarts[position]; at < foundStarts[position + 1]; ++at) listed_[next[found[at]]++] = position;
  }
}

size_t PathIndex::BucketOf(const char* sequence) const {
  uint32_t bytes;
  std::memcpy(&bytes, sequence, sizeof bytes);
  return static_cast<size_t>((bytes * 0x9E3779B1u) >> (32 - bucketBits_));
}

PathIndex::List PathIndex::ListOf(size_t bucket) const {
  return {listed_.data() + starts_[bucket], listed_.data() + starts_[bucket + 1]};
}

std::array<PathIndex::List, PathIndex::kStep> PathIndex::CandidateLists(std::string_view needle) const {
  std::array<List, kStep> lists;
  for (size_t distance = 0; distance < kStep; ++distance) {
    lists[distance] = ListOf(BucketOf(needle.data() + distance));
    for (size_t at = distance + kStep; at + kSequence <= needle.size(); at += kStep) {
      const List list = ListOf(BucketOf(needle.data() + at));
      if (list.second - list.first < lists[distance].second - lists[distance].first) lists[distance] = list;
    }
  }
  return lists;
}
