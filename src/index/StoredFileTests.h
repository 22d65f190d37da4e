#ifndef YH_INDEX_STOREDFILETESTS_H
#define YH_INDEX_STOREDFILETESTS_H

#include <deque>
#include <functional>
#include <string_view>
#include <utility>

#include "platform/Folder.h"
#include "index/ExistenceQueue.h"

// The rows of an index held while the existence tests of their stored files
// run (ExistenceQueue), then handed on in their order: each row whose file
// exists goes to `keep` with what was found; the others are dropped.
template <class Row>
class StoredFileTests {
 public:
  using Keep = std::function<void(Row row, const Folder::Entry& entry)>;

  StoredFileTests(const Folder& folder, Keep keep, TestThreads threads = TestThreads::Workers)
      : keep_(std::move(keep)), queue_(folder, threads) {}

  void Add(Row row, std::string_view storedName) {
    rows_.push_back(std::move(row));
    if (queue_.Add(storedName)) Hand(false);
  }

  // After the last row: tests what is left and hands every row on.
  void Finish() { Hand(true); }

  size_t WorkerCount() const { return queue_.WorkerCount(); }

 private:
  void Hand(bool all) {
    queue_.Take(all, [this](bool found, const Folder::Entry& entry) {
      Row row = std::move(rows_.front());
      rows_.pop_front();
      if (found) keep_(std::move(row), entry);
    });
  }

  Keep keep_;
  std::deque<Row> rows_;
  ExistenceQueue queue_;  // after rows_: its workers stop before the rows go
};

#endif
