#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fault/Damage.h"
#include "fault/FaultBench.h"
#include "fault/SampleBackup.h"

// Device databases and backup indexes that arrive cut short, with flipped
// bits or with the expected tables holding other columns. Only the answers
// that read the damaged file may change.
namespace {

using yhtest::IndexKind;
using yhtest::fault::AllTypes;
using yhtest::fault::FaultBench;
namespace sample = yhtest::sample;

class DamagedDatabases : public ::testing::TestWithParam<IndexKind> {};

std::string IndexFile(IndexKind kind) { return kind == IndexKind::Mbdb ? "Manifest.mbdb" : "Manifest.db"; }

TEST_P(DamagedDatabases, TruncatedDatabasesChangeOnlyTheirOwnAnswers) {
  FaultBench bench(GetParam());
  for (const sample::Database& database : sample::Databases(GetParam())) {
    const std::string stored = bench.Stored(database.domain, database.path);
    const uintmax_t size = std::filesystem::file_size(stored);
    for (uintmax_t keep : {uintmax_t{0}, uintmax_t{100}, size / 4, size / 2, size - 1}) {
      bench.Run(database.path + " cut to " + std::to_string(keep), database.feeds,
                [&] { yhtest::fault::Truncate(stored, keep); });
    }
  }
}

TEST_P(DamagedDatabases, BitFlippedDatabasesChangeOnlyTheirOwnAnswers) {
  FaultBench bench(GetParam());
  for (const sample::Database& database : sample::Databases(GetParam())) {
    const std::string stored = bench.Stored(database.domain, database.path);
    for (uint32_t seed = 1; seed <= 6; ++seed) {
      // Odd seeds spare the 100-byte file header and so reach the pages.
      const size_t from = seed % 2 ? 100 : 0;
      bench.Run(database.path + " flipped, seed " + std::to_string(seed), database.feeds,
                [&] { yhtest::fault::FlipBits(stored, seed, 4 * static_cast<int>(seed), from); });
    }
  }
}

TEST_P(DamagedDatabases, TablesWithOtherColumnsChangeOnlyTheirOwnAnswers) {
  FaultBench bench(GetParam());
  for (const sample::Database& database : sample::Databases(GetParam())) {
    const std::string stored = bench.Stored(database.domain, database.path);
    bench.Run(database.path + " with other columns", database.feeds,
              [&] { yhtest::fault::Rewrite(stored, yhtest::fault::WithOtherColumns(database)); });
  }
}

TEST_P(DamagedDatabases, ADamagedIndexStillGivesAnAnswerForEveryType) {
  FaultBench bench(GetParam());
  const std::string index = bench.Backup() + IndexFile(GetParam());
  const uintmax_t size = std::filesystem::file_size(index);
  for (uintmax_t keep : {uintmax_t{0}, uintmax_t{5}, uintmax_t{7}, size / 3, size / 2, size - 1}) {
    bench.Run("index cut to " + std::to_string(keep), AllTypes(), [&] { yhtest::fault::Truncate(index, keep); });
  }
  for (uint32_t seed = 1; seed <= 8; ++seed) {
    bench.Run("index flipped, seed " + std::to_string(seed), AllTypes(),
              [&] { yhtest::fault::FlipBits(index, seed, 3 * static_cast<int>(seed), seed % 2 ? 6 : 0); });
  }
}

INSTANTIATE_TEST_SUITE_P(BothIndexKinds, DamagedDatabases, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return yhtest::fault::IndexName(info.param); });

}  // namespace
