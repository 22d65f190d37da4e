#include "kinds/Recording.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "kinds/KindFixture.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/PlistDump.h"
#include "support/TreeSnapshot.h"

namespace {

using yhtest::AnalysedDevice;
using yhtest::BackupBuilder;
using yhtest::DumpAndFree;
using yhtest::IndexKind;
using yhtest::LocalDate2001;

const char kMedia[] = "MediaDomain";
const char kOtherDomain[] = "AppDomain-com.example.memos";
const char kDatabase[] = "Media/Recordings/Recordings.db";
// 2014-01-01 00:00:00 UTC, and 2014-07-04 12:30:00 UTC (summer time in New York).
const int32_t kWinter = 410227200;
const int32_t kSummer = 426169800;

// One ZRECORDING row; texts are SQL literals (quoted text or NULL).
std::string Memo(const std::string& date, const std::string& duration, const std::string& path,
                 const std::string& label) {
  return "INSERT INTO ZRECORDING (ZDATE, ZDURATION, ZPATH, ZCUSTOMLABEL) VALUES (" + date + ", " + duration +
         ", " + path + ", " + label + ");\n";
}

std::string Memos(const std::string& rows) { return yhtest::Schema("Recordings.db-ios7") + rows; }

std::string Dict(const std::string& date, const std::string& title, const std::string& duration,
                 const std::string& name, const std::string& path, uint64_t size) {
  return "{\"date\":\"" + date + "\",\"title\":\"" + title + "\",\"duration\":\"" + duration +
         "\",\"name\":\"" + name + "\",\"path\":\"" + path + "\",\"size\":" + std::to_string(size) + "u}";
}

class RecordingTest : public ::testing::TestWithParam<const char*> {
 protected:
  RecordingTest() : zone_(GetParam()) {}

  // Writes the backup and reads its index as the service would.
  void Open(const BackupBuilder& builder, IndexKind kind) {
    builder_ = std::make_unique<BackupBuilder>(builder);
    backup_ = builder.Write(dir_.Path() + "backup");
    device_ = std::make_unique<AnalysedDevice>(backup_, kind);
    ASSERT_TRUE(device_->IndexRead());
  }
  std::string Find() { return DumpAndFree(recording_.FindContent(device_->Get(), 0)); }
  std::string Stored(const std::string& domain, const std::string& path) const {
    return backup_ + builder_->StoredPath(domain, path);
  }
  void Replace(const std::string& domain, const std::string& path, const std::string& sql) const {
    const std::string stored = Stored(domain, path);
    yhtest::WriteDatabase(stored + ".new", sql);
    platform::RenameReplacing(stored + ".new", stored);
  }

  yhtest::ScopedTimeZone zone_;
  yhtest::TempDir dir_;
  std::unique_ptr<BackupBuilder> builder_;
  std::string backup_;
  std::unique_ptr<AnalysedDevice> device_;
  Recording recording_;
};

INSTANTIATE_TEST_SUITE_P(Zones, RecordingTest, ::testing::Values("UTC", "America/New_York"));

TEST_P(RecordingTest, ManifestDbFindsTheFileBelowTheHomeFolder) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(
          kMedia, kDatabase,
          Memos(Memo("410227200.7", "3661.9", "'/var/mobile/Media/Recordings/20140101 000000.m4a'",
                     "'Lecture'") +
                Memo("426169800", "59", "'/var/mobile/Media/Recordings/20140704 123000.m4a'", "NULL")))
      .AddFile(kMedia, "Media/Recordings/20140101 000000.m4a", "abcd")
      .AddFile(kMedia, "Media/Recordings/20140704 123000.m4a", "ab");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(), "[" +
                        Dict(LocalDate2001(kWinter), "Lecture", "01:01:01", "20140101 000000.m4a",
                             Stored(kMedia, "Media/Recordings/20140101 000000.m4a"), 4) +
                        "," +
                        Dict(LocalDate2001(kSummer), "", "00:00:59", "20140704 123000.m4a",
                             Stored(kMedia, "Media/Recordings/20140704 123000.m4a"), 2) +
                        "]");
}

TEST_P(RecordingTest, NullDateAndDurationShowTheStartOf2001AndZeroTime) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder
      .AddDatabase(kMedia, kDatabase,
                   Memos(Memo("NULL", "NULL", "'/var/mobile/Media/Recordings/a.m4a'", "NULL")))
      .AddFile(kMedia, "Media/Recordings/a.m4a", "abc");
  Open(builder, IndexKind::Mbdb);

  EXPECT_EQ(Find(),
            "[" +
                Dict(LocalDate2001(0), "", "00:00:00", "a.m4a", Stored(kMedia, "Media/Recordings/a.m4a"), 3) +
                "]");
}

TEST_P(RecordingTest, PathsWithoutAFileNameAreSkipped) {
  // Every file below would match a recording named "" or "b.m4a".
  BackupBuilder builder(IndexKind::Mbdb);
  builder
      .AddDatabase(kMedia, kDatabase,
                   Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/'", "'slash'") +
                         Memo("0", "0", "'b.m4a'", "'bare'") + Memo("0", "0", "NULL", "'null'") +
                         Memo("0", "0", "''", "'empty'") +
                         Memo("0", "0", "'/var/mobile/Media/Recordings/c.m4a'", "'kept'")))
      .AddFile(kMedia, "Media/Recordings/b.m4a", "bb")
      .AddFile(kMedia, "Media/Recordings/c.m4a", "c");
  Open(builder, IndexKind::Mbdb);

  EXPECT_EQ(
      Find(),
      "[" + Dict(LocalDate2001(0), "kept", "00:00:00", "c.m4a", Stored(kMedia, "Media/Recordings/c.m4a"), 1) +
          "]");
}

TEST_P(RecordingTest, ManifestDbDropsShortAndUnknownPaths) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(
          kMedia, kDatabase,
          Memos(Memo("0", "0", "'/x/abcd.m4a'", "'eleven'") + Memo("0", "0", "'/a/bcdef.m4a'", "'twelve'") +
                Memo("0", "0", "'/private/var/mobile/Media/Recordings/e.m4a'", "'elsewhere'") +
                Memo("0", "0", "'/var/mobile/Media/Recordings/d.m4a'", "'kept'")))
      .AddFile(kMedia, "Media/Recordings/abcd.m4a", "abcd")
      .AddFile(kMedia, "Media/Recordings/bcdef.m4a", "bcdef")
      .AddFile(kMedia, "Media/Recordings/e.m4a", "e")
      .AddFile(kMedia, "Media/Recordings/d.m4a", "dd");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(
      Find(),
      "[" + Dict(LocalDate2001(0), "kept", "00:00:00", "d.m4a", Stored(kMedia, "Media/Recordings/d.m4a"), 2) +
          "]");
}

// Twelve characters are cut whole: what is left is the empty path, which the
// index knows when a file is stored for a domain's root.
TEST_P(RecordingTest, ManifestDbLooksUpATwelveCharacterPathAsTheEmptyPath) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kMedia, kDatabase, Memos(Memo("0", "0", "'/a/bcdef.m4a'", "'twelve'")))
      .AddFile(kMedia, "", "root");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(), "[" + Dict(LocalDate2001(0), "twelve", "00:00:00", "bcdef.m4a", Stored(kMedia, ""), 4) + "]");
}

TEST_P(RecordingTest, NoRecordingDatabaseGivesNullEveryTime) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    BackupBuilder builder(kind);
    builder.AddFile(kMedia, "Media/Recordings/a.m4a", "a");
    Open(builder, kind);
    Recording recording;
    EXPECT_EQ(DumpAndFree(recording.FindContent(device_->Get(), 0)), "null");
    EXPECT_EQ(DumpAndFree(recording.FindContent(device_->Get(), 0)), "null");
    device_.reset();
    std::filesystem::remove_all(backup_);
  }
}

TEST_P(RecordingTest, MbdbTriesOnlyTheFirstFileContainingTheName) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder
      .AddDatabase(kMedia, kDatabase,
                   Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/1.m4a'", "'one'") +
                         Memo("0", "0", "'/var/mobile/Media/Recordings/2.m4a'", "'two'")))
      .AddFile(kMedia, "Media/Recordings/11.m4a", "")
      .AddFile(kMedia, "Media/Recordings/1.m4a", "one")
      .AddFile(kMedia, "Media/Recordings/22.m4a", "twenty-two")
      .AddFile(kMedia, "Media/Recordings/2.m4a", "two");
  Open(builder, IndexKind::Mbdb);

  EXPECT_EQ(Find(), "[" +
                        Dict(LocalDate2001(0), "two", "00:00:00", "2.m4a",
                             Stored(kMedia, "Media/Recordings/22.m4a"), 10) +
                        "]");
}

TEST_P(RecordingTest, EmptyFileIsLeftOutAndTheNextCallSearchesAgain) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(kMedia, kDatabase, Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/a.m4a'", "NULL")))
      .AddFile(kMedia, "Media/Recordings/a.m4a", "");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(), "null");
  EXPECT_EQ(Find(), "null");

  yhtest::WriteFile(Stored(kMedia, "Media/Recordings/a.m4a"), "sound");
  EXPECT_EQ(Find(),
            "[" +
                Dict(LocalDate2001(0), "", "00:00:00", "a.m4a", Stored(kMedia, "Media/Recordings/a.m4a"), 5) +
                "]");
}

TEST_P(RecordingTest, MissingFileIsLeftOut) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    BackupBuilder builder(kind);
    builder
        .AddDatabase(kMedia, kDatabase, Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/a.m4a'", "NULL")))
        .AddMissingFile(kMedia, "Media/Recordings/a.m4a");
    Open(builder, kind);
    Recording recording;
    EXPECT_EQ(DumpAndFree(recording.FindContent(device_->Get(), 0)), "null");
    device_.reset();
    std::filesystem::remove_all(backup_);
  }
}

TEST_P(RecordingTest, DatabasesAreReadInKeyListOrderAndOnlyOnce) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(kMedia, kDatabase,
                   Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/a.m4a'", "'first'")))
      .AddDatabase(kOtherDomain, kDatabase,
                   Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/b.m4a'", "'second'")))
      .AddFile(kMedia, "Media/Recordings/a.m4a", "a")
      .AddFile(kMedia, "Media/Recordings/b.m4a", "bb");
  Open(builder, IndexKind::ManifestDb);
  const std::string expected =
      "[" +
      Dict(LocalDate2001(0), "first", "00:00:00", "a.m4a", Stored(kMedia, "Media/Recordings/a.m4a"), 1) +
      "," +
      Dict(LocalDate2001(0), "second", "00:00:00", "b.m4a", Stored(kMedia, "Media/Recordings/b.m4a"), 2) +
      "]";
  ASSERT_EQ(Find(), expected);

  Replace(kMedia, kDatabase, Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/b.m4a'", "'changed'")));
  EXPECT_EQ(Find(), expected);
}

TEST_P(RecordingTest, UnknownBackupTypeGivesNull) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(kMedia, kDatabase, Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/a.m4a'", "NULL")))
      .AddFile(kMedia, "Media/Recordings/a.m4a", "a");
  Open(builder, IndexKind::ManifestDb);
  device_->Get()->backupType = 2;

  EXPECT_EQ(Find(), "null");
}

TEST_P(RecordingTest, LeavesTheBackupUntouched) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    BackupBuilder builder(kind);
    builder
        .AddDatabase(kMedia, kDatabase, Memos(Memo("0", "0", "'/var/mobile/Media/Recordings/a.m4a'", "NULL")))
        .AddFile(kMedia, "Media/Recordings/a.m4a", "a");
    Open(builder, kind);
    const std::string before = yhtest::SnapshotTree(backup_);
    Recording recording;
    EXPECT_EQ(
        DumpAndFree(recording.FindContent(device_->Get(), 0)),
        "[" + Dict(LocalDate2001(0), "", "00:00:00", "a.m4a", Stored(kMedia, "Media/Recordings/a.m4a"), 1) +
            "]");
    EXPECT_EQ(yhtest::SnapshotTree(backup_), before);
    device_.reset();
    std::filesystem::remove_all(backup_);
  }
}

TEST(RecordingUtcTest, DatesAreSecondsSince2001) {
  yhtest::ScopedTimeZone zone("UTC");
  yhtest::TempDir dir;
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(kMedia, kDatabase,
                   Memos(Memo("426169800.9", "360000", "'/var/mobile/Media/Recordings/a.m4a'", "'Talk'") +
                         Memo("-5", "NULL", "'/var/mobile/Media/Recordings/b.m4a'", "NULL")))
      .AddFile(kMedia, "Media/Recordings/a.m4a", "a")
      .AddFile(kMedia, "Media/Recordings/b.m4a", "b");
  const std::string backup = builder.Write(dir.Path() + "backup");
  AnalysedDevice device(backup, IndexKind::ManifestDb);
  Recording recording;

  EXPECT_EQ(DumpAndFree(recording.FindContent(device.Get(), 0)),
            "[" +
                Dict("2014-07-04 12:30:00", "Talk", "100:00:00", "a.m4a",
                     backup + builder.StoredPath(kMedia, "Media/Recordings/a.m4a"), 1) +
                "," +
                Dict("2001-01-01 00:00:00", "", "00:00:00", "b.m4a",
                     backup + builder.StoredPath(kMedia, "Media/Recordings/b.m4a"), 1) +
                "]");
}

}  // namespace
