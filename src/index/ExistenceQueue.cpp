#include "index/ExistenceQueue.h"

#include <algorithm>
#include <string>
#include <system_error>

namespace {

constexpr size_t kBatchNames = 512;
constexpr unsigned kMostWorkers = 3;
// Batches waiting for a worker before the reading thread tests one itself:
// the rows held meanwhile stay few, however fast the index is read.
constexpr size_t kMostWaiting = 8;

}  // namespace

// The names one after another, each with its closing zero byte, and what
// was found of each; `tested` is guarded by the queue's lock.
struct ExistenceQueue::Batch {
  std::string names;
  std::vector<uint32_t> starts;
  std::vector<Folder::Entry> entries;
  std::vector<char> found;
  bool tested = false;
};

ExistenceQueue::ExistenceQueue(const Folder& folder, TestThreads threads) : folder_(folder), threads_(threads) {}

ExistenceQueue::~ExistenceQueue() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
  }
  work_.notify_all();
  for (std::thread& worker : workers_) worker.join();
}

bool ExistenceQueue::Add(std::string_view name) {
  if (!filling_) {
    filling_ = std::make_unique<Batch>();
    filling_->starts.reserve(kBatchNames);
  }
  filling_->starts.push_back(static_cast<uint32_t>(filling_->names.size()));
  filling_->names.append(name).push_back('\0');
  if (filling_->starts.size() < kBatchNames) return false;
  if (!started_ && threads_ == TestThreads::Workers) StartWorkers();
  Publish();
  Batch* batch = nullptr;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    // Alone, this thread tests each batch as soon as it is full.
    if (untested_.size() > kMostWaiting || threads_ == TestThreads::CallerOnly) batch = NextUntested();
  }
  if (batch) TestAndMark(*batch);
  return true;
}

void ExistenceQueue::Publish() {
  if (!filling_) return;
  Batch* batch = filling_.get();
  batch->entries.resize(batch->starts.size());
  batch->found.resize(batch->starts.size());
  queued_.push_back(std::move(filling_));
  {
    std::lock_guard<std::mutex> lock(mutex_);
    untested_.push_back(batch);
  }
  work_.notify_one();
}

void ExistenceQueue::StartWorkers() {
  started_ = true;
  const unsigned cores = std::thread::hardware_concurrency();
  const unsigned count = std::min(cores > 1 ? cores - 1 : 0, kMostWorkers);
  for (unsigned i = 0; i < count; ++i) {
    // A host out of threads still has its index read, by this thread alone.
    try {
      workers_.emplace_back(&ExistenceQueue::Work, this);
    } catch (const std::system_error&) {
      return;
    }
  }
}

ExistenceQueue::Batch* ExistenceQueue::NextUntested() {
  if (untested_.empty()) return nullptr;
  Batch* batch = untested_.front();
  untested_.pop_front();
  return batch;
}

void ExistenceQueue::Work() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    work_.wait(lock, [this] { return stopping_ || !untested_.empty(); });
    if (stopping_) return;
    Batch* batch = NextUntested();
    lock.unlock();
    TestAndMark(*batch);
    lock.lock();
  }
}

void ExistenceQueue::TestAndMark(Batch& batch) {
  Test(batch);
  {
    std::lock_guard<std::mutex> lock(mutex_);
    batch.tested = true;
  }
  tested_.notify_all();
}

void ExistenceQueue::Test(Batch& batch) const {
  for (size_t at = 0; at < batch.starts.size(); ++at) {
    batch.found[at] = folder_.Has(batch.names.c_str() + batch.starts[at], &batch.entries[at]);
  }
}

void ExistenceQueue::Take(bool all, const std::function<void(bool, const Folder::Entry&)>& take) {
  if (all) Publish();
  while (!queued_.empty()) {
    Batch& front = *queued_.front();
    {
      std::unique_lock<std::mutex> lock(mutex_);
      if (all) {
        // Helps with the batches no worker has taken, then waits for the others.
        while (!front.tested) {
          if (Batch* batch = NextUntested()) {
            lock.unlock();
            TestAndMark(*batch);
            lock.lock();
          } else {
            tested_.wait(lock);
          }
        }
      } else if (!front.tested) {
        return;
      }
    }
    for (size_t at = 0; at < front.starts.size(); ++at) take(front.found[at] != 0, front.entries[at]);
    queued_.pop_front();
  }
}
