#include "kinds/Note.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "kinds/KindFixture.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/NoteStoreBody.h"
#include "support/PlistDump.h"
#include "support/TreeSnapshot.h"

namespace {

using yhtest::AnalysedDevice;
using yhtest::BackupBuilder;
using yhtest::DumpAndFree;
using yhtest::IndexKind;
using yhtest::Gzip;
using yhtest::kNoteStoreHeader;
using yhtest::kNoteStoreTrailer;
using yhtest::LocalDate2001;
using yhtest::NoteStoreBody;
using yhtest::SqlBlob;

const char kHome[] = "HomeDomain";
const char kNotesGroup[] = "AppDomainGroup-group.com.apple.notes";
const char kOldPath[] = "Library/Notes/notes.sqlite";
const char kStorePath[] = "NoteStore.sqlite";
// 2014-01-01 00:00:00 UTC, and 2014-07-04 12:30:00 UTC (summer time in New York).
const int32_t kWinter = 410227200;
const int32_t kSummer = 426169800;

// Note-store data as an SQL literal.
std::string StoreData(const std::string& text) { return SqlBlob(NoteStoreBody(text)); }

// An old-database note with its body row; texts are SQL literals.
std::string OldNote(int id, const std::string& created, const std::string& modified, const std::string& title,
                    const std::string& body) {
  return "INSERT INTO ZNOTE (Z_PK, ZCREATIONDATE, ZMODIFICATIONDATE, ZTITLE, ZBODY) VALUES (" +
         std::to_string(id) + ", " + created + ", " + modified + ", " + title + ", " + std::to_string(id) +
         ");\n" + "INSERT INTO ZNOTEBODY (Z_PK, ZOWNER, ZCONTENT) VALUES (" + std::to_string(id) + ", " +
         std::to_string(id) + ", " + body + ");\n";
}

// A note-store object pointing at note data `dataId` (0: none), and that data
// unless `data` is empty.
std::string StoreNote(int id, const std::string& created, const std::string& modified,
                      const std::string& title, int dataId, const std::string& data) {
  std::string sql =
      "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, ZCREATIONDATE, ZMODIFICATIONDATE1, ZTITLE1, ZNOTEDATA) "
      "VALUES (" +
      std::to_string(id) + ", " + created + ", " + modified + ", " + title + ", " +
      (dataId ? std::to_string(dataId) : "NULL") + ");\n";
  if (!data.empty()) {
    sql += "INSERT INTO ZICNOTEDATA (Z_PK, ZNOTE, ZDATA) VALUES (" + std::to_string(dataId) + ", " +
           std::to_string(id) + ", " + data + ");\n";
  }
  return sql;
}

std::string Dict(const std::string& created, const std::string& modified, const std::string& title,
                 const std::string& body) {
  return "{\"create_date\":\"" + created + "\",\"modify_date\":\"" + modified + "\",\"title\":\"" + title +
         "\",\"body\":\"" + body + "\"}";
}

class NoteTest : public ::testing::TestWithParam<const char*> {
 protected:
  NoteTest() : zone_(GetParam()) {}

  // Writes the backup and reads its index as the service would.
  void Open(const BackupBuilder& builder, IndexKind kind) {
    builder_ = std::make_unique<BackupBuilder>(builder);
    backup_ = builder.Write(dir_.Path() + "backup");
    device_ = std::make_unique<AnalysedDevice>(backup_, kind);
    ASSERT_TRUE(device_->IndexRead());
  }
  std::string Find() { return DumpAndFree(note_.FindContent(device_->Get(), 0)); }
  void Replace(const std::string& domain, const std::string& path, const std::string& sql) const {
    const std::string stored = backup_ + builder_->StoredPath(domain, path);
    yhtest::WriteDatabase(stored + ".new", sql);
    platform::RenameReplacing(stored + ".new", stored);
  }

  yhtest::ScopedTimeZone zone_;
  yhtest::TempDir dir_;
  std::unique_ptr<BackupBuilder> builder_;
  std::string backup_;
  std::unique_ptr<AnalysedDevice> device_;
  Note note_;
};

INSTANTIATE_TEST_SUITE_P(Zones, NoteTest, ::testing::Values("UTC", "America/New_York"));

std::string OldNotes() {
  return yhtest::Schema("notes.sqlite-ios7") +
         OldNote(1, "410227200.5", "426169800", "'Groceries'", "'<div>Milk &amp; <b>eggs</b></div>'") +
         // No body row: left out by the join.
         "INSERT INTO ZNOTE (Z_PK, ZCREATIONDATE, ZMODIFICATIONDATE, ZTITLE, ZBODY) "
         "VALUES (2, 0, 0, 'Orphan', 9);\n" +
         OldNote(3, "NULL", "NULL", "NULL", "NULL");
}

std::string StoreNotes(const std::string& schema) {
  return yhtest::Schema(schema) +
         StoreNote(1, "410227200", "410227300", "'Older'", 1, StoreData("first text")) +
         StoreNote(2, "426169800", "426169900", "'Newer'", 2, StoreData("second text")) +
         // A folder: no note data at all.
         StoreNote(3, "0", "500000000", "'Notes'", 0, "") +
         // Note data that is missing from ZICNOTEDATA.
         StoreNote(4, "0", "400000000", "'Lost'", 7, "") +
         StoreNote(5, "NULL", "NULL", "NULL", 5, StoreData("untitled"));
}

TEST_P(NoteTest, OldNotesComeFirstThenNoteStoreNotesNewestFirst) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    for (const char* schema : {"NoteStore.sqlite-ios-plaso", "NoteStore.sqlite-ios17"}) {
      SCOPED_TRACE(schema);
      BackupBuilder builder(kind);
      // The note store is listed first in the index; the old database still leads.
      builder.AddDatabase(kNotesGroup, kStorePath, StoreNotes(schema))
          .AddDatabase(kHome, kOldPath, OldNotes());
      Open(builder, kind);

      EXPECT_EQ(Find(), "[" +
                            Dict(LocalDate2001(kWinter), LocalDate2001(kSummer), "Groceries",
                                 "<div>Milk &amp; <b>eggs</b></div>") +
                            "," + Dict("", "", "", "") + "," +
                            Dict(LocalDate2001(kSummer), LocalDate2001(426169900), "Newer", "second text") +
                            "," +
                            Dict(LocalDate2001(kWinter), LocalDate2001(410227300), "Older", "first text") +
                            "," + Dict("", "", "", "untitled") + "]");
      device_.reset();
      std::filesystem::remove_all(backup_);
    }
  }
}

TEST_P(NoteTest, EachCallReadsTheDatabasesAgain) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHome, kOldPath,
                      yhtest::Schema("notes.sqlite-ios7") + OldNote(1, "0", "0", "'One'", "'1'"));
  Open(builder, IndexKind::ManifestDb);
  const std::string first = "[" + Dict(LocalDate2001(0), LocalDate2001(0), "One", "1") + "]";
  ASSERT_EQ(Find(), first);
  ASSERT_EQ(Find(), first);

  Replace(kHome, kOldPath, yhtest::Schema("notes.sqlite-ios7") + OldNote(1, "0", "0", "'Two'", "'2'"));
  EXPECT_EQ(Find(), "[" + Dict(LocalDate2001(0), LocalDate2001(0), "Two", "2") + "]");
}

TEST_P(NoteTest, DatabasesOfOneKindAreReadInKeyListOrder) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder
      .AddDatabase(kHome, kOldPath,
                   yhtest::Schema("notes.sqlite-ios7") + OldNote(1, "0", "0", "'Home'", "'h'"))
      .AddDatabase("AppDomain-com.example.old", kOldPath,
                   yhtest::Schema("notes.sqlite-ios7") + OldNote(1, "0", "0", "'App'", "'a'"));
  Open(builder, IndexKind::Mbdb);

  EXPECT_EQ(Find(), "[" + Dict(LocalDate2001(0), LocalDate2001(0), "Home", "h") + "," +
                        Dict(LocalDate2001(0), LocalDate2001(0), "App", "a") + "]");
}

TEST_P(NoteTest, NothingToReadGivesAnEmptyArray) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile(kHome, kOldPath, "not a database").AddFile(kNotesGroup, kStorePath, "");
  Open(builder, IndexKind::ManifestDb);
  EXPECT_EQ(Find(), "[]");

  device_->Get()->backupType = 2;
  EXPECT_EQ(Find(), "[]");
}

TEST_P(NoteTest, LeavesTheBackupUntouched) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    BackupBuilder builder(kind);
    builder.AddDatabase(kHome, kOldPath, OldNotes())
        .AddDatabase(kNotesGroup, kStorePath, StoreNotes("NoteStore.sqlite-ios17"));
    Open(builder, kind);
    const std::string before = yhtest::SnapshotTree(backup_);
    EXPECT_NE(Find(), "[]");
    EXPECT_EQ(yhtest::SnapshotTree(backup_), before);
    device_.reset();
    std::filesystem::remove_all(backup_);
  }
}

// Body texts of the note store: one note per data blob, newest first, so
// that each note is read right after the one above it.
TEST_P(NoteTest, NoteStoreBodyEndsAtMarkZeroOrInflatedLength) {
  const std::string longText(3000, 'x');
  std::string gzipBadCrc = Gzip(kNoteStoreHeader + "checked" + kNoteStoreTrailer);
  gzipBadCrc[gzipBadCrc.size() - 8] ^= 0x55;
  const std::vector<std::string> blobs = {
      StoreData("plain"),
      SqlBlob(Gzip(kNoteStoreHeader + longText)),     // cut at the 2048-byte buffer
      SqlBlob(Gzip(kNoteStoreHeader + "short")),      // no end mark: ends at the inflated length
      SqlBlob(Gzip(kNoteStoreHeader.substr(0, 10))),  // nothing after the header
      SqlBlob(Gzip("")),                     // inflates to nothing: no note
      SqlBlob(Gzip(kNoteStoreHeader + std::string("zero\0rest", 9) + kNoteStoreTrailer)),
      SqlBlob(Gzip(kNoteStoreHeader + longText)),
      "X'00112233445566778899'",  // not gzip: the cleared buffer, no text
      SqlBlob(gzipBadCrc),           // fails at its end: the text is all there
  };
  std::string sql = yhtest::Schema("NoteStore.sqlite-ios17");
  for (size_t i = 0; i < blobs.size(); ++i) {
    const int id = static_cast<int>(i) + 1;
    sql += StoreNote(id, "0", std::to_string(1000 - id), "'t'", id, blobs[i]);
  }
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kNotesGroup, kStorePath, sql);
  Open(builder, IndexKind::ManifestDb);

  const auto note = [](int id, const std::string& body) {
    return Dict(LocalDate2001(0), LocalDate2001(1000 - id), "t", body);
  };
  const std::string cut(2048 - 14, 'x');
  EXPECT_EQ(Find(), "[" + note(1, "plain") + "," + note(2, cut) + "," + note(3, "short") + "," + note(4, "") +
                        "," + note(6, "zero") + "," + note(7, cut) + "," + note(8, "") + "," +
                        note(9, "checked") + "]");
}

// Only NULL gives an empty date; any other text is read as a number.
TEST_P(NoteTest, AnEmptyDateTextIsTheStartOf2001) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(kHome, kOldPath, yhtest::Schema("notes.sqlite-ios7") + OldNote(1, "''", "NULL", "'a'", "'b'"))
      .AddDatabase(kNotesGroup, kStorePath,
                   yhtest::Schema("NoteStore.sqlite-ios17") + StoreNote(1, "NULL", "''", "'c'", 1, StoreData("d")));
  Open(builder, IndexKind::ManifestDb);
  EXPECT_EQ(Find(), "[" + Dict(LocalDate2001(0), "", "a", "b") + "," + Dict("", LocalDate2001(0), "c", "d") + "]");
}

TEST(NoteUtcTest, DatesAreWholeSecondsSince2001) {
  yhtest::ScopedTimeZone zone("UTC");
  yhtest::TempDir dir;
  BackupBuilder builder(IndexKind::Mbdb);
  builder
      .AddDatabase(kHome, kOldPath,
                   yhtest::Schema("notes.sqlite-ios7") + OldNote(1, "426169800.9", "-5", "'a'", "'b'"))
      .AddDatabase(kNotesGroup, kStorePath,
                   yhtest::Schema("NoteStore.sqlite-ios-plaso") +
                       StoreNote(1, "410227200.99", "0", "'c'", 1, StoreData("d")));
  AnalysedDevice device(builder.Write(dir.Path() + "backup"), IndexKind::Mbdb);
  Note note;

  EXPECT_EQ(
      DumpAndFree(note.FindContent(device.Get(), 0)),
      "[{\"create_date\":\"2014-07-04 12:30:00\",\"modify_date\":\"2001-01-01 00:00:00\",\"title\":\"a\","
      "\"body\":\"b\"},"
      "{\"create_date\":\"2014-01-01 00:00:00\",\"modify_date\":\"2001-01-01 00:00:00\",\"title\":\"c\","
      "\"body\":\"d\"}]");
}

}  // namespace
