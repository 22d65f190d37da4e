#include "index/ManifestDb.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "index/StoredNames.h"
#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"
#include "support/TreeSnapshot.h"

namespace {

namespace fs = std::filesystem;

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::TempDir;
using yhtest::WriteDatabase;
using yhtest::WriteFile;

constexpr char kSms[] = "Library/SMS/sms.db";

// The fileIDs of the records at exactly `path`, in index order, read back
// from their stored names (the first two characters, "/", the fileID).
std::vector<std::string> FileIdsAt(const IndexReader& reader, std::string_view path) {
  std::vector<std::string> ids;
  for (const std::string& name : yhtest::StoredNamesAt(reader, path)) {
    const std::string id = name.substr(name.find('/') + 1);
    EXPECT_EQ(name, id.substr(0, 2) + "/" + id);
    ids.push_back(id);
  }
  return ids;
}

std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void MakeTreeReadOnly(const std::string& root) {
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_directory()) yhtest::SetMode(entry.path().string(), 0444);
  }
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (entry.is_directory()) yhtest::SetMode(entry.path().string(), 0555);
  }
  yhtest::SetMode(root, 0555);
}

class ManifestDbTest : public ::testing::Test {
 protected:
  // An index with the given extra rows (SQL run after the built rows).
  std::string Build(BackupBuilder& builder, const std::string& extraSql = "") {
    const std::string path = builder.Write(dir_.Path() + "backup");
    if (!extraSql.empty()) WriteDatabase(path + "Manifest.db", extraSql);
    return path;
  }
  uint32_t Read(const std::string& path) { return reader_.ReadDb(path.c_str()); }
  std::vector<std::string> ContentPaths() {
    std::vector<std::string> paths;
    for (const ManifestDb::DBFileRecord* record : *reader_.GetContentList()) paths.emplace_back(record->relativePath());
    return paths;
  }

  TempDir dir_;
  ManifestDb reader_;
};

TEST_F(ManifestDbTest, KeepsPresentFilesWithTheirColumns) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile("HomeDomain", kSms, "sms").AddFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG", "jpg");
  const std::string path = Build(builder);
  ASSERT_EQ(Read(path), 1u);
  ASSERT_EQ(reader_.GetContentList()->size(), 2u);
  const ManifestDb::DBFileRecord& sms = *reader_.GetContentList()->front();
  // printf '%s' 'HomeDomain-Library/SMS/sms.db' | sha1sum
  EXPECT_EQ(sms.fileID(), "3d0d7e5fb2ce288813306e4d4636395e047a3d28");
  EXPECT_EQ(sms.domain(), "HomeDomain");
  EXPECT_EQ(sms.relativePath(), kSms);
  EXPECT_EQ(sms.flags(), 1);
  EXPECT_EQ(ContentPaths(), (std::vector<std::string>{kSms, "Media/DCIM/100APPLE/IMG_0001.JPG"}));
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->Find(kSms), reader_.GetContentList()->front());
  EXPECT_EQ(FileIdsAt(reader_, "Library/SMS/sms.db"), std::vector<std::string>{sms.fileID()});
}

// Positions in the content list of the paths containing `needle`.
std::vector<size_t> Containing(const PathIndex& index, std::string_view needle) {
  std::vector<size_t> positions;
  index.ForEachContaining(needle, [&positions](size_t position) {
    positions.push_back(position);
    return true;
  });
  return positions;
}

TEST_F(ManifestDbTest, PathIndexCoversTheContentListInOrderAndIsMadeOnce) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG", "a")
      .AddFile("HomeDomain", kSms, "sms")
      .AddFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG.bak", "b");
  ASSERT_EQ(Read(Build(builder)), 1u);
  const PathIndex& index = reader_.GetPathIndex();
  EXPECT_EQ(&reader_.GetPathIndex(), &index);
  EXPECT_EQ(Containing(index, "100APPLE/IMG_0001.JPG"), (std::vector<size_t>{0, 2}));
  EXPECT_EQ(Containing(index, "sms.db"), std::vector<size_t>{1});
}

TEST_F(ManifestDbTest, SkipsFolderRowsAndFilesNotCopied) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDirectory("HomeDomain", "Library/SMS")
      .AddMissingFile("HomeDomain", kSms)
      .AddFile("HomeDomain", "Library/a", "a");
  const std::string path = Build(builder);
  ASSERT_EQ(Read(path), 1u);
  EXPECT_EQ(ContentPaths(), std::vector<std::string>{"Library/a"});
  EXPECT_TRUE(FileIdsAt(reader_, "Library/SMS/sms.db").empty());
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->Find(kSms), nullptr);
}

TEST_F(ManifestDbTest, EachRecordNamesItsStoredFileThroughTheIndexInterface) {
  const char* const paths[] = {"Library/SMS/sms.db", "Library/SMS/sms.db-wal", "NoteStore.sqlite"};
  BackupBuilder builder(IndexKind::ManifestDb);
  for (const char* path : paths) builder.AddFile("HomeDomain", path, "x");
  ASSERT_EQ(Read(Build(builder)), 1u);
  const IndexReader& reader = reader_;
  EXPECT_EQ(reader.Type(), BackupType::ManifestDb);
  ASSERT_EQ(reader.RecordCount(), 3u);
  for (size_t position = 0; position < 3; ++position) {
    const std::string id = BackupBuilder::FileId("HomeDomain", paths[position]);
    EXPECT_EQ(reader.DomainAt(position), "HomeDomain");
    EXPECT_EQ(reader.PathAt(position), paths[position]);
    EXPECT_EQ(reader.StoredNameAt(position), id.substr(0, 2) + "/" + id);
    EXPECT_EQ(reader.StoredAt(position).size, 1u);
    EXPECT_EQ(reader.MappedAt(paths[position]), position);
  }
  EXPECT_EQ(reader.MappedAt("Library/SMS"), std::nullopt);
}

TEST_F(ManifestDbTest, NoteStoreMatchesInAnyDomainButOnlyAsTheWholePath) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile("AppDomainGroup-group.com.apple.notes", "NoteStore.sqlite", "x")
      .AddFile("AppDomainGroup-group.com.apple.notes", "Library/NoteStore.sqlite", "x")
      .AddFile("HomeDomain", "NoteStore.sqlite.bak", "x");
  const std::string path = Build(builder);
  ASSERT_EQ(Read(path), 1u);
  EXPECT_EQ(reader_.GetContentList()->size(), 3u);
  EXPECT_EQ(FileIdsAt(reader_, "NoteStore.sqlite"), std::vector<std::string>{BackupBuilder::FileId(
                                            "AppDomainGroup-group.com.apple.notes", "NoteStore.sqlite")});
}

TEST_F(ManifestDbTest, SamePathInTwoDomainsKeepsBothMapsTheLaterAndGivesTwoKeys) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile("HomeDomain", kSms, "first").AddFile("AppDomain-com.example", kSms, "second");
  const std::string path = Build(builder);
  ASSERT_EQ(Read(path), 1u);
  ASSERT_EQ(reader_.GetContentList()->size(), 2u);
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->size(), 1u);
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->Find(kSms), reader_.GetContentList()->back());
  EXPECT_EQ(reader_.GetContentList()->back()->domain(), "AppDomain-com.example");
  EXPECT_EQ(FileIdsAt(reader_, "Library/SMS/sms.db"), (std::vector<std::string>{BackupBuilder::FileId("HomeDomain", kSms),
                                                            BackupBuilder::FileId("AppDomain-com.example", kSms)}));
}

TEST_F(ManifestDbTest, NullColumnsGiveZeroFlagsAndEmptyTexts) {
  BackupBuilder builder(IndexKind::ManifestDb);
  const std::string path = Build(builder,
                                 "INSERT INTO Files VALUES ('aa01', NULL, 'Library/x', NULL, NULL);"
                                 "INSERT INTO Files VALUES ('aa02', '', NULL, 4, NULL);");
  WriteFile(path + "aa/aa01", "x");
  WriteFile(path + "aa/aa02", "x");
  ASSERT_EQ(Read(path), 1u);
  ASSERT_EQ(reader_.GetContentList()->size(), 2u);
  const ManifestDb::DBFileRecord& first = *reader_.GetContentList()->front();
  EXPECT_EQ(first.domain(), "");
  EXPECT_EQ(first.relativePath(), "Library/x");
  EXPECT_EQ(first.flags(), 0);
  const ManifestDb::DBFileRecord& second = *reader_.GetContentList()->back();
  EXPECT_EQ(second.domain(), "");
  EXPECT_EQ(second.relativePath(), "");
  EXPECT_EQ(second.flags(), 4);
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->Find(""), &second);
}

TEST_F(ManifestDbTest, RowsWithoutFileIdAreSkipped) {
  BackupBuilder builder(IndexKind::ManifestDb);
  // An empty fileID would name the backup folder itself, which exists.
  const std::string path = Build(builder,
                                 "INSERT INTO Files VALUES (NULL, 'HomeDomain', 'Library/SMS/sms.db', 1, NULL);"
                                 "INSERT INTO Files VALUES ('', 'HomeDomain', 'Library/Notes/notes.sqlite', 1, NULL);");
  ASSERT_EQ(Read(path), 1u);
  EXPECT_TRUE(reader_.GetContentList()->empty());
  EXPECT_TRUE(FileIdsAt(reader_, "Library/SMS/sms.db").empty());
  EXPECT_TRUE(FileIdsAt(reader_, "Library/Notes/notes.sqlite").empty());
}

TEST_F(ManifestDbTest, ShortFileIdUsesWhatThereIsAsItsFolder) {
  BackupBuilder builder(IndexKind::ManifestDb);
  const std::string path = Build(builder,
                                 "INSERT INTO Files VALUES ('a', 'HomeDomain', 'Library/SMS/sms.db', 1, NULL);"
                                 "INSERT INTO Files VALUES ('b', 'HomeDomain', 'Library/b', 1, NULL);");
  WriteFile(path + "a/a", "x");
  ASSERT_EQ(Read(path), 1u);
  EXPECT_EQ(ContentPaths(), std::vector<std::string>{kSms});
  EXPECT_EQ(FileIdsAt(reader_, "Library/SMS/sms.db"), std::vector<std::string>{"a"});
}

TEST_F(ManifestDbTest, StoredFileIsLookedForUnderItsTwoCharacterFolder) {
  BackupBuilder builder(IndexKind::ManifestDb);
  const std::string path = Build(builder, "INSERT INTO Files VALUES ('3d01', 'HomeDomain', 'Library/x', 1, NULL);");
  WriteFile(path + "3d01", "flat, not in its folder");
  ASSERT_EQ(Read(path), 1u);
  EXPECT_TRUE(reader_.GetContentList()->empty());
}

TEST_F(ManifestDbTest, EmptyFilesTableReadsToTheEndWithEmptyLists) {
  BackupBuilder builder(IndexKind::ManifestDb);
  const std::string path = Build(builder);
  ASSERT_EQ(Read(path), 1u);
  EXPECT_TRUE(reader_.GetContentList()->empty());
  EXPECT_TRUE(reader_.GetQueryPathKeyMap()->empty());
  EXPECT_TRUE(FileIdsAt(reader_, "Library/SMS/sms.db").empty());
  EXPECT_TRUE(FileIdsAt(reader_, "Library/Calendar/Calendar.sqlitedb").empty());
}

TEST_F(ManifestDbTest, PathWithoutTrailingSeparatorFails) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile("HomeDomain", kSms, "sms");
  const std::string path = Build(builder);
  EXPECT_EQ(Read(path.substr(0, path.size() - 1)), 0u);
  EXPECT_TRUE(reader_.GetContentList()->empty());
  EXPECT_FALSE(fs::exists(dir_.Path() + "backupManifest.db"));
}

TEST_F(ManifestDbTest, MissingIndexReturnsZeroAndCreatesNothing) {
  const std::string before = yhtest::SnapshotTree(dir_.Path());
  EXPECT_EQ(Read(dir_.Path()), 0u);
  EXPECT_TRUE(reader_.GetContentList()->empty());
  EXPECT_FALSE(fs::exists(dir_.Path() + "Manifest.db"));
  EXPECT_EQ(yhtest::SnapshotTree(dir_.Path()), before);
}

TEST_F(ManifestDbTest, IndexThatIsNotADatabaseReturnsZero) {
  WriteFile(dir_.Path() + "Manifest.db", "This is not an SQLite database, only some text that is long enough.");
  EXPECT_EQ(Read(dir_.Path()), 0u);
  EXPECT_TRUE(reader_.GetContentList()->empty());
}

TEST_F(ManifestDbTest, DatabaseWithoutFilesTableReturnsZero) {
  WriteDatabase(dir_.Path() + "Manifest.db", "CREATE TABLE Properties (key TEXT PRIMARY KEY, value BLOB);");
  EXPECT_EQ(Read(dir_.Path()), 0u);
}

TEST_F(ManifestDbTest, RowsReadBeforeAFailureStay) {
  // Wide rows spread the table over many pages; the last page, the table's
  // right-most leaf, is then overwritten so the scan fails part way.
  const std::string path = dir_.Path();
  WriteDatabase(path + "Manifest.db",
                "CREATE TABLE Files (fileID TEXT, domain TEXT, relativePath TEXT, flags INTEGER, file BLOB);"
                "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 59) "
                "INSERT INTO Files SELECT printf('r%03d', i), hex(zeroblob(1000)), 'p' || i, 1, NULL FROM n;");
  for (int i = 0; i < 60; ++i) WriteFile(path + "r0/r0" + (i < 10 ? "0" : "") + std::to_string(i), "x");
  std::string bytes = ReadBytes(path + "Manifest.db");
  const size_t pageSize = static_cast<unsigned char>(bytes[16]) << 8 | static_cast<unsigned char>(bytes[17]);
  ASSERT_GT(bytes.size(), 4 * pageSize);
  bytes.replace(bytes.size() - pageSize, pageSize, pageSize, '\xFF');
  WriteFile(path + "Manifest.db", bytes);

  EXPECT_EQ(Read(path), 0u);
  EXPECT_GT(reader_.GetContentList()->size(), 0u);
  EXPECT_LT(reader_.GetContentList()->size(), 60u);
  EXPECT_EQ(reader_.GetContentList()->front()->fileID(), "r000");
}

TEST_F(ManifestDbTest, WalModeIndexIsReadWithoutCreatingFiles) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile("HomeDomain", kSms, "sms");
  const std::string path = Build(builder, "PRAGMA journal_mode=WAL;");
  const std::string header = ReadBytes(path + "Manifest.db").substr(18, 2);
  ASSERT_EQ(header, std::string("\x02\x02", 2));
  const std::string before = yhtest::SnapshotTree(path);
  ASSERT_EQ(Read(path), 1u);
  EXPECT_EQ(reader_.GetContentList()->size(), 1u);
  EXPECT_FALSE(fs::exists(path + "Manifest.db-wal"));
  EXPECT_FALSE(fs::exists(path + "Manifest.db-shm"));
  EXPECT_EQ(yhtest::SnapshotTree(path), before);
}

TEST_F(ManifestDbTest, ReadingLeavesAReadOnlyBackupUntouched) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile("HomeDomain", kSms, "sms").AddDirectory("HomeDomain", "Library");
  const std::string path = Build(builder, "PRAGMA journal_mode=WAL;");
  MakeTreeReadOnly(path);
  const std::string before = yhtest::SnapshotTree(path);
  ASSERT_EQ(Read(path), 1u);
  EXPECT_EQ(FileIdsAt(reader_, "Library/SMS/sms.db").size(), 1u);
  EXPECT_EQ(yhtest::SnapshotTree(path), before);
}

TEST(ManifestDbRecord, CopyKeepsEveryField) {
  const ManifestDb::DBFileRecord record("ab12", "HomeDomain", "Library/x", 1, {7, true});
  const ManifestDb::DBFileRecord copy(record);
  EXPECT_EQ(copy.fileID(), "ab12");
  EXPECT_EQ(copy.domain(), "HomeDomain");
  EXPECT_EQ(copy.relativePath(), "Library/x");
  EXPECT_EQ(copy.flags(), 1);
  EXPECT_EQ(copy.stored().size, 7u);
  EXPECT_TRUE(copy.stored().regular);
  EXPECT_TRUE(copy.IsAlive());
}

TEST(ManifestDbRecord, KeepsAHexFileIdAsBytesAndGivesItBackUnchanged) {
  const ManifestDb::DBFileRecord record("3d0d7e5fb2ce288813306e4d4636395e047a3d28", "", "", 0, {});
  EXPECT_EQ(record.fileID(), "3d0d7e5fb2ce288813306e4d4636395e047a3d28");
  EXPECT_EQ(ManifestDb::DBFileRecord("3D0D7E5FB2CE288813306E4D4636395E047A3D28", "", "", 0, {}).fileID(),
            "3D0D7E5FB2CE288813306E4D4636395E047A3D28");
}

}  // namespace
