// yh_bench_carve [MEGABYTES] [ROUNDS]: builds a messages database of about
// MEGABYTES (default 100) in which a fifth of the rows were deleted without
// secure delete, writes it to a file, then reads the file page by page
// ROUNDS times (default 5) for its deleted rows, as CarveDatabaseFile does,
// and prints the median speed of database read, by the wall clock and by the
// process's CPU time (steadier on a busy machine), and the rows found.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "recovery/FileBytes.h"
#include "recovery/FileImage.h"
#include "recovery/RecoverRows.h"
#include "support/StoredDatabase.h"

namespace {

std::string MessagesSql(double megabytes) {
  // About 200 bytes a row.
  const long rows = static_cast<long>(megabytes * 1e6 / 200);
  return "CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, text TEXT, handle_id INTEGER,"
         " date INTEGER, is_from_me INTEGER, service TEXT);"
         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         std::to_string(rows) +
         ") INSERT INTO message (guid, text, handle_id, date, is_from_me, service)"
         " SELECT printf('%08X-0000-4000-8000-%012d', i, i), printf('message %d: ', i) || hex(randomblob(60)),"
         " i % 97, 600000000000000000 + i * 1000000000, i % 2, 'iMessage' FROM n;"
         "DELETE FROM message WHERE ROWID % 5 = 0;";
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  const double megabytes = argc > 1 ? std::atof(argv[1]) : 100;
  const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 5;
  const yhtest::StoredDatabaseFile stored(MessagesSql(megabytes));
  std::vector<double> seconds;
  std::vector<double> cpuSeconds;
  size_t deleted = 0;
  uint64_t bytes = 0;
  for (int round = 0; round < rounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t cpuStart = std::clock();
    auto database = std::make_unique<FileBytes>(stored.Path());
    bytes = database->Size();
    const RecoveredRows recovered = RecoverRows(
        FileImage(std::move(database), std::make_unique<MemoryBytes>(""), std::make_unique<MemoryBytes>("")), false);
    cpuSeconds.push_back(static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC);
    seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    deleted = recovered.rows.size();
  }
  const double median = Median(seconds);
  const double cpuMedian = Median(cpuSeconds);
  const double size = bytes / 1e6;
  std::printf("database: %.1f MB, %zu deleted rows found\n", size, deleted);
  std::printf("carve: median %.3f s of %d rounds, %.0f MB/s of database read (CPU time %.3f s, %.0f MB/s)\n", median,
              rounds, size / median, cpuMedian, size / cpuMedian);
  return 0;
}
