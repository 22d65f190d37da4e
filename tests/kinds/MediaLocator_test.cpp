#include "kinds/MediaLocator.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/FileHelpers.h"
#include "kinds/KindFixture.h"
#include "support/BackupBuilder.h"
#include "support/RandomPaths.h"

namespace yhtest {
namespace {

// The straightforward scan the locator stands in for: every index record in
// index order, tested for the needle, until the visitor says stop.
template <class Visitor>
void ScanContaining(const BackupDevice* device, const std::string& needle, Visitor visit) {
  if (device->backupType == 1) {
    for (const ManifestDb::DBFileRecord* file : *static_cast<ManifestDb*>(ReaderOf(device))->GetContentList()) {
      const std::string id = file->fileID();
      if (file->relativePath().find(needle) != std::string::npos &&
          !visit(device->backupPath + id.substr(0, 2) + "/" + id)) {
        return;
      }
    }
  } else {
    auto* reader = static_cast<Mbdb*>(ReaderOf(device));
    for (const Mbdb::MBFileRecord* file : *reader->GetContentList()) {
      if (file->path().find(needle) != std::string::npos && !visit(reader->GetBackupPath() + file->storedName())) return;
    }
  }
}

// What the scan sees of a stored file, and what the locator gives: its
// size as the index's look at it found it, which must be what stat() finds.
const std::string& PathOf(const std::string& stored) { return stored; }
const std::string& PathOf(const ReadableFile& stored) { return stored.path; }
uint64_t SizeOf(const std::string& stored) { return VQGetFileSize(stored.c_str()); }
uint64_t SizeOf(const ReadableFile& stored) {
  EXPECT_EQ(stored.size, VQGetFileSize(stored.path.c_str())) << stored.path;
  return stored.size;
}

// Stored files visited until the `stopAfter`-th (0: all of them).
std::vector<std::string> Located(const MediaLocator& locator, const std::string& needle, size_t stopAfter) {
  std::vector<std::string> visited;
  locator.ForEachContaining(needle, [&](const ReadableFile& stored) {
    SizeOf(stored);
    visited.push_back(stored.path);
    return visited.size() != stopAfter;
  });
  return visited;
}

std::vector<std::string> Scanned(const BackupDevice* device, const std::string& needle, size_t stopAfter) {
  std::vector<std::string> visited;
  ScanContaining(device, needle, [&](const std::string& stored) {
    visited.push_back(stored);
    return visited.size() != stopAfter;
  });
  return visited;
}

// The photo rule: every match is appended until one has bytes.
template <class Search>
std::pair<std::string, uint64_t> FirstNonEmpty(Search search) {
  std::string path;
  uint64_t size = 0;
  search([&](const auto& stored) {
    path += PathOf(stored);
    size = SizeOf(stored);
    return size == 0;
  });
  return {path, size};
}

const char* const kDomains[] = {"MediaDomain", "CameraRollDomain", "HomeDomain"};

// Random backups over the shared random paths.
class RandomBackup : public RandomPaths {
 public:
  using RandomPaths::RandomPaths;

  // Files (many of them empty), the same path under several domains,
  // folders and files missing from the backup.
  BackupBuilder Builder(IndexKind kind, std::vector<std::string>* paths) {
    BackupBuilder builder(kind);
    for (size_t row = 0, rows = Below(40); row < rows; ++row) {
      const std::string path = !paths->empty() && Below(4) == 0 ? (*paths)[Below(paths->size())] : Path();
      // Rows are unique by domain and path; the domain is drawn until it is.
      const std::string domain = kDomains[used_[path]++ % 3];
      if (used_[path] > 3) continue;
      paths->push_back(path);
      switch (Below(6)) {
        case 0:
          builder.AddDirectory(domain, path);
          break;
        case 1:
          builder.AddMissingFile(domain, path);
          break;
        case 2:
        case 3:
          builder.AddFile(domain, path, "");
          break;
        default:
          builder.AddFile(domain, path, std::string(1 + Below(9), 'x'));
      }
    }
    used_.clear();
    return builder;
  }

 private:
  std::map<std::string, size_t> used_;
};

class MediaLocatorTest : public ::testing::TestWithParam<IndexKind> {};

TEST_P(MediaLocatorTest, VisitsWhatTheScanVisitsOnRandomBackups) {
  RandomBackup random(GetParam() == IndexKind::Mbdb ? 11 : 12);
  for (int backup = 0; backup < 100; ++backup) {
    TempDir dir;
    std::vector<std::string> paths;
    const std::string folder = random.Builder(GetParam(), &paths).Write(dir.Path() + "backup");
    AnalysedDevice device(folder, GetParam());
    ASSERT_TRUE(device.IndexRead());
    const MediaLocator locator(device.Get());
    for (int query = 0; query < 30; ++query) {
      const std::string needle = random.Needle(paths);
      const size_t stopAfter = random.Below(3);
      ASSERT_EQ(Located(locator, needle, stopAfter), Scanned(device.Get(), needle, stopAfter))
          << "backup " << backup << ", needle \"" << needle << "\"";
      ASSERT_EQ(FirstNonEmpty([&](auto visit) { locator.ForEachContaining(needle, visit); }),
                FirstNonEmpty([&](auto visit) { ScanContaining(device.Get(), needle, visit); }))
          << "backup " << backup << ", needle \"" << needle << "\"";
    }
  }
}

TEST_P(MediaLocatorTest, EmptyCopiesAheadOfTheRealFileAreAllVisited) {
  TempDir dir;
  BackupBuilder builder(GetParam());
  builder.AddFile("MediaDomain", "Media/Recordings/11.m4a", "")
      .AddFile("MediaDomain", "Media/Other/x", "abc")
      .AddFile("CameraRollDomain", "Media/Recordings/11.m4a", "")
      .AddFile("HomeDomain", "Media/Recordings/1.m4a", "abcd");
  const std::string folder = builder.Write(dir.Path() + "backup");
  AnalysedDevice device(folder, GetParam());
  ASSERT_TRUE(device.IndexRead());
  const MediaLocator locator(device.Get());

  const std::string empty1 = folder + builder.StoredPath("MediaDomain", "Media/Recordings/11.m4a");
  const std::string empty2 = folder + builder.StoredPath("CameraRollDomain", "Media/Recordings/11.m4a");
  const std::string full = folder + builder.StoredPath("HomeDomain", "Media/Recordings/1.m4a");
  EXPECT_EQ(Located(locator, "1.m4a", 0), (std::vector<std::string>{empty1, empty2, full}));
  EXPECT_EQ(Located(locator, "1.m4a", 1), (std::vector<std::string>{empty1}));
  EXPECT_EQ(FirstNonEmpty([&](auto visit) { locator.ForEachContaining("1.m4a", visit); }),
            std::make_pair(empty1 + empty2 + full, uint64_t{4}));
}

TEST_P(MediaLocatorTest, FindExactTakesTheLaterFileOfTheSamePath) {
  TempDir dir;
  BackupBuilder builder(GetParam());
  builder.AddFile("MediaDomain", "Media/Recordings/1.m4a", "a").AddFile("HomeDomain", "Media/Recordings/1.m4a", "b");
  const std::string folder = builder.Write(dir.Path() + "backup");
  AnalysedDevice device(folder, GetParam());
  ASSERT_TRUE(device.IndexRead());
  const MediaLocator locator(device.Get());

  const std::optional<ReadableFile> found = locator.FindExact("Media/Recordings/1.m4a");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->path, folder + builder.StoredPath("HomeDomain", "Media/Recordings/1.m4a"));
  EXPECT_EQ(found->size, 1u);
  EXPECT_TRUE(found->regular);
  EXPECT_FALSE(locator.FindExact("Recordings/1.m4a").has_value());
}

TEST_P(MediaLocatorTest, SizeNowIsWhatStatFindsAtTheTimeOfAsking) {
  TempDir dir;
  BackupBuilder builder(GetParam());
  builder.AddFile("MediaDomain", "Media/Recordings/1.m4a", "");
  const std::string folder = builder.Write(dir.Path() + "backup");
  AnalysedDevice device(folder, GetParam());
  ASSERT_TRUE(device.IndexRead());
  const MediaLocator locator(device.Get());
  const std::optional<ReadableFile> found = locator.FindExact("Media/Recordings/1.m4a");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(locator.SizeNow(*found), 0u);

  WriteFile(found->path, "sound");
  EXPECT_EQ(found->size, 0u);  // as the index's look found it
  EXPECT_EQ(locator.SizeNow(*found), 5u);
  std::filesystem::remove(found->path);
  EXPECT_EQ(locator.SizeNow(*found), 0u);

  // A file outside the backup folder (a decrypted copy) is asked by its path.
  const std::string outside = dir.Path() + "copy";
  WriteFile(outside, "abc");
  EXPECT_EQ(locator.SizeNow(ReadableFile{outside, 0, true}), 3u);
  EXPECT_EQ(locator.SizeNow(ReadableFile{dir.Path() + "missing", 0, true}), 0u);
}

TEST(MediaLocator, AnUnknownBackupTypeFindsNothing) {
  TempDir dir;
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile("MediaDomain", "Media/Recordings/1.m4a", "a");
  AnalysedDevice device(builder.Write(dir.Path() + "backup"), IndexKind::ManifestDb);
  device.Get()->backupType = 2;
  const MediaLocator locator(device.Get());
  EXPECT_EQ(Located(locator, "", 0), std::vector<std::string>{});
  EXPECT_FALSE(locator.FindExact("Media/Recordings/1.m4a").has_value());
}

INSTANTIATE_TEST_SUITE_P(BothIndexKinds, MediaLocatorTest, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const ::testing::TestParamInfo<IndexKind>& info) {
                           return info.param == IndexKind::Mbdb ? "Mbdb" : "ManifestDb";
                         });

}  // namespace
}  // namespace yhtest
