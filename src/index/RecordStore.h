#ifndef YH_INDEX_RECORDSTORE_H
#define YH_INDEX_RECORDSTORE_H

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

// The records of an index, made one by one and never moved, in blocks of
// a few thousand: a record costs its own size only, and a pointer to it
// stays valid as long as the store.
template <class Record>
class RecordStore {
 public:
  RecordStore() = default;
  RecordStore(const RecordStore&) = delete;
  RecordStore& operator=(const RecordStore&) = delete;
  ~RecordStore() {
    for (size_t i = 0; i < count_; ++i) At(i)->~Record();
  }

  template <class... Args>
  Record* Add(Args&&... args) {
    if (count_ % kBlock == 0) blocks_.emplace_back(new std::byte[kBlock * sizeof(Record)]);
    Record* record = new (At(count_)) Record(std::forward<Args>(args)...);
    ++count_;
    return record;
  }

 private:
  static constexpr size_t kBlock = 4096;
  static_assert(alignof(Record) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "blocks come from plain new[]");

  Record* At(size_t i) const {
    return std::launder(reinterpret_cast<Record*>(blocks_[i / kBlock].get() + i % kBlock * sizeof(Record)));
  }

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  size_t count_ = 0;
};

#endif
