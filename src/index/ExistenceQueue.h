#ifndef YH_INDEX_EXISTENCEQUEUE_H
#define YH_INDEX_EXISTENCEQUEUE_H

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

#include "index/TestThreads.h"
#include "platform/Folder.h"

// Tests whether the stored files named by an index's rows exist, on worker
// threads while the reading thread goes on reading the index, and gives the
// results back in the order the names came. Testing is most of the time of
// reading a large index; the kernel resolves names on several cores at once.
//
// Design decision: names are handed on in batches of a few hundred, and the
// workers start with the first full batch, so an index of a few hundred rows
// is tested on the reading thread alone. One worker fewer than the host has
// cores (at most three) leaves the reading thread a core of its own; when
// the index is read, the reading thread tests what is left with them, and
// it tests a batch itself whenever too many wait, so that few rows are held.
class ExistenceQueue {
 public:
  explicit ExistenceQueue(const Folder& folder, TestThreads threads = TestThreads::Workers);
  // Stops the workers: what they have not tested is never tested.
  ~ExistenceQueue();
  ExistenceQueue(const ExistenceQueue&) = delete;
  ExistenceQueue& operator=(const ExistenceQueue&) = delete;

  // Queues the next name below the folder (tested as Folder::Has tests it;
  // a path holds no zero byte). True when a batch went to the workers, so
  // that earlier results may be ready to take.
  bool Add(std::string_view name);

  // Calls `take(found, entry)` for each queued name in order, as far as the
  // tests are done. With `all`, every name left is tested first (by this
  // thread too) and every result is taken.
  void Take(bool all, const std::function<void(bool found, const Folder::Entry& entry)>& take);

  // How many worker threads were started.
  size_t WorkerCount() const { return workers_.size(); }

 private:
  struct Batch;

  void Publish();
  void StartWorkers();
  void Work();
  void Test(Batch& batch) const;
  // Tests a batch taken from the untested ones and says so to the waiting.
  void TestAndMark(Batch& batch);
  // Under the lock: the next batch no one has taken, or null.
  Batch* NextUntested();

  const Folder& folder_;
  const TestThreads threads_;
  std::unique_ptr<Batch> filling_;
  std::deque<std::unique_ptr<Batch>> queued_;  // in order; the reading thread's alone
  std::mutex mutex_;
  std::condition_variable work_;
  std::condition_variable tested_;
  std::deque<Batch*> untested_;  // guarded by mutex_
  bool stopping_ = false;        // guarded by mutex_
  bool started_ = false;  // whether workers were asked for (the host may have none to give)
  std::vector<std::thread> workers_;
};

#endif
