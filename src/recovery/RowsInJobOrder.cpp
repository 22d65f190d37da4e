#include "recovery/RowsInJobOrder.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iterator>
#include <mutex>
#include <thread>

namespace {

// Jobs are handed out in runs of this many, so that the threads seldom meet
// on the counter and each run's rows stay together.
constexpr size_t kJobsPerRun = 32;

}  // namespace

std::vector<RecoveredRow> RowsInJobOrder(size_t count,
                                         const std::function<void(size_t job, std::vector<RecoveredRow>* rows)>& run) {
  const size_t runs = (count + kJobsPerRun - 1) / kJobsPerRun;
  std::vector<std::vector<RecoveredRow>> found(runs);
  std::atomic<size_t> next{0};
  std::exception_ptr failure;
  std::mutex failureLock;
  const auto work = [&] {
    try {
      for (size_t at = next++; at < runs; at = next++) {
        const size_t end = std::min(count, (at + 1) * kJobsPerRun);
        for (size_t job = at * kJobsPerRun; job < end; ++job) run(job, &found[at]);
      }
    } catch (...) {
      const std::lock_guard<std::mutex> hold(failureLock);
      if (!failure) failure = std::current_exception();
      next = runs;
    }
  };
  std::thread helper;
  if (runs > 1 && std::thread::hardware_concurrency() > 1) helper = std::thread(work);
  work();
  if (helper.joinable()) helper.join();
  if (failure) std::rethrow_exception(failure);
  std::vector<RecoveredRow> rows;
  size_t total = 0;
  for (const std::vector<RecoveredRow>& part : found) total += part.size();
  rows.reserve(total);
  for (std::vector<RecoveredRow>& part : found) {
    std::move(part.begin(), part.end(), std::back_inserter(rows));
    std::vector<RecoveredRow>().swap(part);
  }
  return rows;
}
