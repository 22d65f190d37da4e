#include "index/StoredFileTests.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "support/BackupBuilder.h"

namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::TempDir;
using yhtest::WriteFile;

struct Kept {
  int row;
  uint64_t size;
  bool regular;
  bool operator==(const Kept& other) const {
    return row == other.row && size == other.size && regular == other.regular;
  }
};

// Row i names "f<i>": every third exists with i % 5 bytes, every seventh is
// a folder, the rest are absent.
std::string NameOf(int row) { return "f" + std::to_string(row); }

void MakeFiles(const TempDir& dir, int rows) {
  for (int row = 0; row < rows; ++row) {
    if (row % 7 == 0) {
      WriteFile(dir.Path() + NameOf(row) + "/inside", "");
    } else if (row % 3 == 0) {
      WriteFile(dir.Path() + NameOf(row), std::string(row % 5, 'x'));
    }
  }
}

// What testing the names one after another on this thread keeps.
std::vector<Kept> OneByOne(const Folder& folder, int rows) {
  std::vector<Kept> kept;
  for (int row = 0; row < rows; ++row) {
    Folder::Entry entry{};
    if (folder.Has(NameOf(row), &entry)) kept.push_back({row, entry.size, entry.regular});
  }
  return kept;
}

// Around one batch, several batches and more than the workers keep up with:
// the rows come back in their order with what was found of each, and only
// those that exist.
TEST(StoredFileTests, KeepTheRowsWhoseFilesExistInTheirOrder) {
  for (const int rows : {0, 1, 511, 512, 513, 1025, 5000}) {
    TempDir dir;
    MakeFiles(dir, rows);
    const Folder folder(dir.Path());
    std::vector<Kept> kept;
    const auto keep = [&kept](int row, const Folder::Entry& entry) { kept.push_back({row, entry.size, entry.regular}); };
    StoredFileTests<int> tests(folder, keep);
    for (int row = 0; row < rows; ++row) tests.Add(row, NameOf(row));
    tests.Finish();
    EXPECT_EQ(kept, OneByOne(folder, rows)) << rows << " rows";
  }
}

// Tests on the caller's thread alone keep the same rows and start no thread.
TEST(StoredFileTests, OnTheCallersThreadAloneKeepTheSameRowsAndStartNoThread) {
  for (const int rows : {0, 513, 5000}) {
    TempDir dir;
    MakeFiles(dir, rows);
    const Folder folder(dir.Path());
    std::vector<Kept> kept;
    const auto keep = [&kept](int row, const Folder::Entry& entry) { kept.push_back({row, entry.size, entry.regular}); };
    StoredFileTests<int> tests(folder, keep, TestThreads::CallerOnly);
    for (int row = 0; row < rows; ++row) tests.Add(row, NameOf(row));
    EXPECT_EQ(tests.WorkerCount(), 0u);
    tests.Finish();
    EXPECT_EQ(kept, OneByOne(folder, rows)) << rows << " rows";
  }
}

// Rows that only move (as records' owned parts do) are handed on whole.
TEST(StoredFileTests, RowsThatOnlyMoveAreHandedOnWhole) {
  TempDir dir;
  MakeFiles(dir, 2000);
  const Folder folder(dir.Path());
  std::vector<int> kept;
  const auto keep = [&kept](std::unique_ptr<int> row, const Folder::Entry&) { kept.push_back(*row); };
  StoredFileTests<std::unique_ptr<int>> tests(folder, keep);
  for (int row = 0; row < 2000; ++row) tests.Add(std::make_unique<int>(row), NameOf(row));
  tests.Finish();
  std::vector<int> expected;
  for (const Kept& each : OneByOne(folder, 2000)) expected.push_back(each.row);
  EXPECT_EQ(kept, expected);
}

// Reading that ends early (a failure, an exception) leaves tests unfinished:
// the workers stop and nothing more is handed on.
TEST(StoredFileTests, GoneBeforeTheEndStopsTheWorkers) {
  TempDir dir;
  MakeFiles(dir, 3000);
  const Folder folder(dir.Path());
  size_t kept = 0;
  {
    StoredFileTests<int> tests(folder, [&kept](int, const Folder::Entry&) { ++kept; });
    for (int row = 0; row < 3000; ++row) tests.Add(row, NameOf(row));
  }
  EXPECT_LE(kept, OneByOne(folder, 3000).size());
}

// Indexes of several thousand rows, tested on worker threads: each reader
// keeps the present files in row order with their sizes, and no folder or
// absent file.
class LargeIndex : public ::testing::TestWithParam<IndexKind> {
 protected:
  static constexpr int kRows = 3000;

  std::string Build(std::vector<std::pair<std::string, uint64_t>>* present) {
    BackupBuilder builder(GetParam());
    for (int row = 0; row < kRows; ++row) {
      const std::string path = "Library/Large/" + std::to_string(row);
      if (row % 7 == 0) {
        builder.AddDirectory("HomeDomain", path);
      } else if (row % 3 == 0) {
        builder.AddMissingFile("HomeDomain", path);
      } else {
        builder.AddFile("HomeDomain", path, std::string(row % 11, 'y'));
        present->emplace_back(path, row % 11);
      }
    }
    return builder.Write(dir_.Path() + "backup");
  }

  TempDir dir_;
};

TEST_P(LargeIndex, KeepsEveryPresentFileInRowOrder) {
  std::vector<std::pair<std::string, uint64_t>> present;
  const std::string path = Build(&present);
  std::vector<std::pair<std::string, uint64_t>> kept;
  if (GetParam() == IndexKind::ManifestDb) {
    ManifestDb reader;
    ASSERT_EQ(reader.ReadDb(path.c_str()), 1u);
    for (const auto* record : *reader.GetContentList()) kept.emplace_back(record->relativePath(), record->stored().size);
  } else {
    Mbdb reader;
    ASSERT_EQ(reader.ReadMBDB(path.c_str()), 1);
    for (const auto* record : *reader.GetContentList()) kept.emplace_back(record->path(), record->stored().size);
  }
  EXPECT_EQ(kept, present);
}

INSTANTIATE_TEST_SUITE_P(BothIndexes, LargeIndex, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb));

}  // namespace
