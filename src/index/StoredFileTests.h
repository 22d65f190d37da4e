#ifndef YH_INDEX_STOREDFILETESTS_H
#define YH_INDEX_STOREDFILETESTS_H

#include <deque>
#include <string_view>
#include <utility>

#include "common/Folder.h"
#include "index/ExistenceQueue.h"

// The rows of an index held while the existence tests of their stored files
// run (ExistenceQueue), then handed on in their order: each row whose file
// exists goes to `keep` with what was found; the others are dropped.
template <class Row>
class StoredFileTests {
 public:
  explicit StoredFileTests(const Folder& folder) : queue_(folder) {}

  template <class Keep>
  void Add(Row row, std::string_view storedName, Keep&& keep) {
    rows_.push_back(std::move(row));
    if (queue_.Add(storedName)) Hand(false, keep);
  }

  // After the last row: tests what is left and hands every row on.
  template <class Keep>
  void Finish(Keep&& keep) {
    Hand(true, keep);
  }

 private:
  template <class Keep>
  void Hand(bool all, Keep& keep) {
    queue_.Take(all, [this, &keep](bool found, const Folder::Entry& entry) {
      Row row = std::move(rows_.front());
      rows_.pop_front();
      if (found) keep(std::move(row), entry);
    });
  }

  std::deque<Row> rows_;
  ExistenceQueue queue_;  // after rows_: its workers stop before the rows go
};

#endif
