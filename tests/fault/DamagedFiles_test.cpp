#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "fault/Damage.h"
#include "fault/FaultBench.h"
#include "fault/SampleBackup.h"
#include "support/SystemFiles.h"

// Stored files that are not plain readable files: a folder, a file without
// read permission, symbolic links (within the backup, out of it, dangling)
// and a named pipe, in the place of each database, media file and index.
namespace {

namespace fs = std::filesystem;
using yhtest::IndexKind;
using yhtest::fault::AllTypes;
using yhtest::fault::FaultBench;
namespace sample = yhtest::sample;

struct StoredFile {
  std::string path;
  std::vector<iDeviceContentType> feeds;
};

// Every database and file of the sample, where the work copy keeps it.
std::vector<StoredFile> StoredFiles(const FaultBench& bench) {
  std::vector<StoredFile> files;
  for (const sample::Database& database : sample::Databases(bench.Kind())) {
    files.push_back({bench.Stored(database.domain, database.path), database.feeds});
  }
  for (const sample::File& file : sample::Files(bench.Kind())) {
    files.push_back({bench.Stored(file.domain, file.path), file.feeds});
  }
  return files;
}

std::string IndexFile(const FaultBench& bench) {
  return bench.Backup() + (bench.Kind() == IndexKind::Mbdb ? "Manifest.mbdb" : "Manifest.db");
}

// Moves the file out of the way and leaves a link to where it went.
void LinkTo(const std::string& path, const std::string& target) {
  fs::rename(path, target);
  ASSERT_TRUE(yhtest::MakeSymlink(target, path));
}

class DamagedFiles : public ::testing::TestWithParam<IndexKind> {};

TEST_P(DamagedFiles, AFolderInPlaceOfAFileChangesOnlyItsOwnAnswers) {
  FaultBench bench(GetParam());
  for (const StoredFile& file : StoredFiles(bench)) {
    bench.Run(file.path + " is a folder", file.feeds, [&] { yhtest::fault::ReplaceWithFolder(file.path); });
  }
  bench.Run("the index is a folder", AllTypes(), [&] { yhtest::fault::ReplaceWithFolder(IndexFile(bench)); });
  for (const char* plist : {"Info.plist", "Manifest.plist", "Status.plist"}) {
    bench.Run(std::string(plist) + " is a folder", {},
              [&] { yhtest::fault::ReplaceWithFolder(bench.Backup() + plist); });
  }
}

// Without effect when the tests run as root, who reads everything.
TEST_P(DamagedFiles, AFileWithoutReadPermissionChangesOnlyItsOwnAnswers) {
  if (!yhtest::HasModes()) GTEST_SKIP() << yhtest::WhyNoModes();
  FaultBench bench(GetParam());
  for (const StoredFile& file : StoredFiles(bench)) {
    bench.Run(file.path + " unreadable", file.feeds, [&] { fs::permissions(file.path, fs::perms::none); });
  }
  bench.Run("the index unreadable", AllTypes(), [&] { fs::permissions(IndexFile(bench), fs::perms::none); });
  bench.Run("Info.plist unreadable", {}, [&] { fs::permissions(bench.Backup() + "Info.plist", fs::perms::none); });
}

// A stored file that is a link to the same bytes elsewhere in the backup
// reads as the file itself.
TEST_P(DamagedFiles, ALinkWithinTheBackupReadsAsTheFile) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  FaultBench bench(GetParam());
  for (const StoredFile& file : StoredFiles(bench)) {
    bench.Run(file.path + " links within", {}, [&] { LinkTo(file.path, bench.Backup() + "moved"); });
  }
}

// Answers name the link, inside the backup, never the place it leads to;
// whoever copies a file named in an answer must not follow such a link.
TEST_P(DamagedFiles, ALinkOutOfTheBackupIsNamedByItsPlaceInTheBackup) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  FaultBench bench(GetParam());
  const std::string outside = bench.Outside() + "outside";
  for (const StoredFile& file : StoredFiles(bench)) {
    bench.Run(file.path + " links out", {}, [&] {
      fs::remove(outside);
      LinkTo(file.path, outside);
    });
  }
}

TEST_P(DamagedFiles, ADanglingLinkCountsAsAMissingFile) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  FaultBench bench(GetParam());
  for (const StoredFile& file : StoredFiles(bench)) {
    bench.Run(file.path + " dangles", file.feeds, [&] {
      fs::remove(file.path);
      ASSERT_TRUE(yhtest::MakeSymlink(bench.Backup() + "nowhere", file.path));
    });
  }
}

// A folder whose index is a dangling link holds no backup.
TEST_P(DamagedFiles, ABackupWhoseIndexDanglesIsNotListed) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  yhtest::TempDir root;
  const std::string backup = sample::Builder(GetParam()).Write(root.Path() + "backup");
  const std::string index = backup + (GetParam() == IndexKind::Mbdb ? "Manifest.mbdb" : "Manifest.db");
  fs::remove(index);
  ASSERT_TRUE(yhtest::MakeSymlink(backup + "nowhere", index));
  const std::string before = yhtest::SnapshotTree(root.Path());
  EXPECT_FALSE(yhtest::fault::AskEverything(backup).found);
  EXPECT_EQ(GetBackupDeviceListAt(root.Path().c_str()), nullptr);
  EXPECT_EQ(yhtest::SnapshotTree(root.Path()), before);
}

// Opening a named pipe waits for a writer that never comes.
TEST_P(DamagedFiles, ANamedPipeIsNotWaitedFor) {
  if (!yhtest::HasFifos()) GTEST_SKIP() << yhtest::WhyNoFifos();
  FaultBench bench(GetParam());
  for (const StoredFile& file : StoredFiles(bench)) {
    bench.Run(file.path + " is a pipe", file.feeds, [&] {
      fs::remove(file.path);
      ASSERT_TRUE(yhtest::MakeFifo(file.path));
    });
  }
  bench.Run("the index is a pipe", AllTypes(), [&] {
    fs::remove(IndexFile(bench));
    ASSERT_TRUE(yhtest::MakeFifo(IndexFile(bench)));
  });
  for (const char* plist : {"Info.plist", "Manifest.plist"}) {
    bench.Run(std::string(plist) + " is a pipe", {}, [&] {
      fs::remove(bench.Backup() + plist);
      ASSERT_TRUE(yhtest::MakeFifo(bench.Backup() + plist));
    });
  }
}

INSTANTIATE_TEST_SUITE_P(BothIndexKinds, DamagedFiles, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return yhtest::fault::IndexName(info.param); });

}  // namespace
