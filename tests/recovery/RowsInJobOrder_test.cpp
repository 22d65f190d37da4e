#include "recovery/RowsInJobOrder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>

namespace {

// Job i gives i % 3 rows, rowids i * 10, i * 10 + 1, ...; the early jobs
// take longer, so that the other thread runs ahead.
void Job(size_t job, std::vector<RecoveredRow>* rows) {
  if (job < 40) std::this_thread::sleep_for(std::chrono::microseconds(200));
  for (size_t at = 0; at < job % 3; ++at) {
    RecoveredRow row;
    row.rowid = static_cast<int64_t>(job * 10 + at);
    rows->push_back(row);
  }
}

TEST(RowsInJobOrder, GivesTheRowsInJobOrderWhicheverThreadMadeThem) {
  std::set<std::thread::id> threads;
  std::mutex lock;
  const bool twoCores = std::thread::hardware_concurrency() > 1;
  const auto seenBy = [&] {
    const std::lock_guard<std::mutex> hold(lock);
    return threads.size();
  };
  const std::vector<RecoveredRow> rows = RowsInJobOrder(1000, [&](size_t job, std::vector<RecoveredRow>* out) {
    {
      const std::lock_guard<std::mutex> hold(lock);
      threads.insert(std::this_thread::get_id());
    }
    // The first job waits (a while at most) for the other thread to take
    // jobs of its own, so that the rows surely come from both.
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (job == 0 && twoCores && seenBy() < 2 && std::chrono::steady_clock::now() < until) std::this_thread::yield();
    Job(job, out);
  });
  std::vector<int64_t> expected;
  for (size_t job = 0; job < 1000; ++job) {
    for (size_t at = 0; at < job % 3; ++at) expected.push_back(static_cast<int64_t>(job * 10 + at));
  }
  std::vector<int64_t> got;
  for (const RecoveredRow& row : rows) got.push_back(*row.rowid);
  EXPECT_EQ(got, expected);
  if (twoCores) EXPECT_EQ(threads.size(), 2u);
}

TEST(RowsInJobOrder, NoJobsGiveNoRows) {
  EXPECT_TRUE(RowsInJobOrder(0, Job).empty());
  EXPECT_EQ(RowsInJobOrder(3, Job).size(), 3u);
}

TEST(RowsInJobOrder, AJobsExceptionReachesTheCallerAfterBothThreadsStop) {
  std::atomic<int> running{0};
  EXPECT_THROW(RowsInJobOrder(500,
                              [&](size_t job, std::vector<RecoveredRow>* out) {
                                ++running;
                                if (job == 300) throw std::runtime_error("page");
                                Job(job, out);
                                --running;
                              }),
               std::runtime_error);
  EXPECT_EQ(running.load(), 1);  // only the job that threw never finished
}

}  // namespace
