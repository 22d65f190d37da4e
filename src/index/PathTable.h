#ifndef YH_INDEX_PATHTABLE_H
#define YH_INDEX_PATHTABLE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

// The records of a reader's content list by exact path, where a later
// record of a path replaces an earlier one. An open-addressing table of
// positions in the list: four bytes a slot, where a hash map costs a node
// of its own per path.
template <class Record>
class PathTable {
 public:
  using PathOf = std::string_view (Record::*)() const;

  // Maps every record of `records`, which must outlive the table unchanged.
  void Fill(const std::vector<Record*>& records, PathOf path);

  // The record mapped under `path`, or NULL; and its position in the list.
  Record* Find(std::string_view path) const;
  std::optional<size_t> PositionOf(std::string_view path) const;

  // Whether more than one record has this path: only then need the others
  // be looked for in the list.
  bool Repeated(std::string_view path) const;

  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

 private:
  // The slot holding `path`, or the empty slot where it would go.
  size_t SlotOf(std::string_view path) const;

  const std::vector<Record*>* records_ = nullptr;
  PathOf path_ = nullptr;
  std::vector<uint32_t> slots_;  // position + 1; 0 for an empty slot
  std::unordered_set<size_t> repeated_;  // slots whose path more than one record has
  size_t size_ = 0;
};

template <class Record>
void PathTable<Record>::Fill(const std::vector<Record*>& records, PathOf path) {
  records_ = &records;
  path_ = path;
  size_ = 0;
  // At most half full, so that a search ends after a slot or two.
  size_t capacity = 8;
  while (capacity < 2 * records.size()) capacity *= 2;
  slots_.assign(capacity, 0);
  repeated_.clear();
  for (size_t position = 0; position < records.size(); ++position) {
    const size_t at = SlotOf((records[position]->*path)());
    if (slots_[at] == 0) {
      ++size_;
    } else {
      repeated_.insert(at);
    }
    slots_[at] = static_cast<uint32_t>(position + 1);
  }
}

template <class Record>
Record* PathTable<Record>::Find(std::string_view path) const {
  const std::optional<size_t> position = PositionOf(path);
  return position ? (*records_)[*position] : nullptr;
}

template <class Record>
std::optional<size_t> PathTable<Record>::PositionOf(std::string_view path) const {
  if (slots_.empty()) return std::nullopt;
  const uint32_t slot = slots_[SlotOf(path)];
  if (slot == 0) return std::nullopt;
  return slot - 1;
}

template <class Record>
bool PathTable<Record>::Repeated(std::string_view path) const {
  return !slots_.empty() && repeated_.count(SlotOf(path)) != 0;
}

template <class Record>
size_t PathTable<Record>::SlotOf(std::string_view path) const {
  const size_t mask = slots_.size() - 1;
  for (size_t at = std::hash<std::string_view>()(path) & mask;; at = (at + 1) & mask) {
    const uint32_t slot = slots_[at];
    if (slot == 0 || ((*records_)[slot - 1]->*path_)() == path) return at;
  }
}

#endif
