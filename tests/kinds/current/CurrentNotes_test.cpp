#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "support/BackupBuilder.h"
#include "support/NoteDocumentWriter.h"
#include "support/NoteStoreBody.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};
const char kNotesDomain[] = "AppDomainGroup-group.com.apple.notes";
const char kNoteStorePath[] = "NoteStore.sqlite";
const char kLegacyPath[] = "Library/Notes/notes.sqlite";

// Seconds since 2001 of 2019-07-01 12:00 UTC (summer), 2020-01-15 12:00 UTC
// (winter) and 2040-03-01 12:00 UTC.
const char kSummer[] = "583675200";
const char kWinter[] = "600782400";
const char kLate[] = "1235908800";

struct Note {
  std::string created, modified, title, body;
  bool locked;
  std::string folder;
};

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

std::string Expected(const std::vector<Note>& notes) {
  std::string text = "[";
  for (const Note& note : notes) {
    if (text.size() > 1) text += ",";
    text += "{\"create_date\":" + Quoted(note.created) + ",\"modify_date\":" + Quoted(note.modified) +
            ",\"title\":" + Quoted(note.title) + ",\"body\":" + Quoted(note.body) +
            ",\"locked\":" + (note.locked ? "true" : "false") + ",\"folder\":" + Quoted(note.folder) + "}";
  }
  return text + "]";
}

// The entities of an iOS 17 note store.
const char kEntities[] =
    "INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_NAME, Z_SUPER, Z_MAX) VALUES "
    "(3, 'ICCloudSyncingObject', 0, 20), (12, 'ICNote', 3, 20), (14, 'ICAccount', 3, 20), (15, 'ICFolder', 3, 20);\n";

std::string LongText() {
  std::string text;
  for (int line = 0; line < 300; ++line) text += "line " + std::to_string(line) + " of a long note\n";
  return text;
}

const std::string kEmoji = "Trip \xF0\x9F\x8F\x94\xEF\xB8\x8F \xF0\xA0\x80\x8B caf\xC3\xA9 \"quoted\"";
const std::string kMarked("tab\x1A" "after the mark", 18);

// An iOS 17 note store: an account, a folder, three readable notes (one
// modified after 2038), a locked note, a note marked for deletion, and an
// iOS 7 notes database with a note deleted on the device.
std::string WriteNotesBackup(const TempDir& root, IndexKind kind) {
  const std::string store =
      Schema("NoteStore.sqlite-ios17") + kEntities +
      "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZNAME) VALUES (1, 14, 'iCloud');\n"
      "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE2, ZCREATIONDATE) VALUES (2, 15, 'Trips', " +
      std::string(kSummer) +
      ");\n"
      "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1, ZCREATIONDATE, ZCREATIONDATE3, ZMODIFICATIONDATE1, "
      "ZFOLDER, ZNOTEDATA, ZISPASSWORDPROTECTED, ZMARKEDFORDELETION) VALUES "
      "(10, 12, 'Emoji', NULL, " + kSummer + ", " + kSummer + " + 60, 2, 1, 0, 0), "
      "(11, 12, 'Long', NULL, " + kWinter + ", " + kWinter + ", 2, 2, 0, 0), "
      "(12, 12, 'Marked', NULL, " + kSummer + ", " + kLate + ", NULL, 3, NULL, NULL), "
      "(13, 12, 'Secret', NULL, " + kSummer + ", " + kSummer + ", 2, 4, 1, 0), "
      "(14, 12, 'Gone', NULL, " + kSummer + ", " + kSummer + ", 2, 5, 0, 1);\n"
      "INSERT INTO ZICNOTEDATA (Z_PK, Z_ENT, ZNOTE, ZDATA) VALUES "
      "(1, 19, 10, " + SqlBlob(NoteDocumentBlob(kEmoji)) + "), "
      "(2, 19, 11, " + SqlBlob(NoteDocumentBlob(LongText())) + "), "
      "(3, 19, 12, " + SqlBlob(NoteDocumentBlob(kMarked)) + "), "
      "(4, 19, 13, X'0102030405060708'), "
      "(5, 19, 14, " + SqlBlob(NoteDocumentBlob("deleted text")) + ");\n";
  const std::string legacy =
      Schema("notes.sqlite-ios7") +
      "INSERT INTO ZSTORE (Z_PK, ZNAME) VALUES (1, 'Notes');\n"
      "INSERT INTO ZNOTE (Z_PK, ZCREATIONDATE, ZMODIFICATIONDATE, ZTITLE, ZBODY, ZSTORE, ZDELETEDFLAG) VALUES "
      "(1, " + kWinter + ", " + kWinter + " + 3600, 'Old list', 1, 1, 0), "
      "(2, " + kSummer + ", " + kSummer + ", 'Old gone', 2, 1, 1), "
      "(3, NULL, NULL, 'No body', NULL, NULL, NULL);\n"
      "INSERT INTO ZNOTEBODY (Z_PK, ZCONTENT) VALUES (1, 'Old list<div>milk, eggs</div><div><br></div>"
      "<div>bread &amp; jam&nbsp;&#x2014; &lt;fresh&gt;</div>'), (2, '<div>gone</div>');\n";
  return BackupBuilder(kind)
      .AddDatabase("HomeDomain", kLegacyPath, legacy)
      .AddDatabase(kNotesDomain, kNoteStorePath, store)
      .Write(root.Path() + "backup");
}

// Old notes keep their text as HTML: the current service gives its text.
TEST(CurrentNotes, OldNotesFirstThenLastModifiedWithTrueDatesAndWholeTexts) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = WriteNotesBackup(root, kind);
    for (const auto& [zone, summer, winter] :
         {std::tuple<const char*, const char*, const char*>{"UTC", "12", "12"}, {"America/New_York", "08", "07"}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      const std::string july = std::string("2019-07-01 ") + summer;
      const std::string january = std::string("2020-01-15 ") + winter;
      const std::string late = std::string("2040-03-01 ") + winter;
      EXPECT_EQ(served.Answer(ContentNote),
                Expected({
                    {january + ":00:00", std::string("2020-01-15 ") + (zone[0] == 'U' ? "13" : "08") + ":00:00",
                     "Old list", "Old list\nmilk, eggs\n\nbread & jam\u00a0\u2014 <fresh>", false, "Notes"},
                    {"", "", "No body", "", false, ""},
                    {july + ":00:00", late + ":00:00", "Marked", kMarked, false, ""},
                    {january + ":00:00", january + ":00:00", "Long", LongText(), false, "Trips"},
                    {july + ":00:00", july + ":01:00", "Emoji", kEmoji, false, "Trips"},
                    {july + ":00:00", july + ":00:00", "Secret", "", true, "Trips"},
                }))
          << zone;
    }
  }
}

TEST(CurrentNotes, TheDescribedServiceStillAnswersAsBefore) {
  TempDir root;
  const std::string backup = WriteNotesBackup(root, IndexKind::ManifestDb);
  ScopedTimeZone utc("UTC");
  // Its inner join drops the old note without a body; its query keeps the
  // deleted ones; it reads ZCREATIONDATE, which this generation leaves NULL.
  ServedBackup described(backup, Service::Described);
  const std::string answer = described.Answer(ContentNote);
  EXPECT_NE(answer.find("\"title\":\"Old gone\""), std::string::npos);
  EXPECT_NE(answer.find("\"title\":\"Gone\""), std::string::npos);
  EXPECT_EQ(answer.find("No body"), std::string::npos);
  EXPECT_EQ(answer.find("\"locked\""), std::string::npos);
  EXPECT_NE(answer.find("{\"create_date\":\"\",\"modify_date\":\"2040-03-01 12:00:00\",\"title\":\"Marked\""),
            std::string::npos);
}

TEST(CurrentNotes, EachGenerationsCreationColumnIsRead) {
  // The plaso store has every creation column: notes of the first
  // generations fill ZCREATIONDATE, later ones ZCREATIONDATE1, then
  // ZCREATIONDATE3; the newest column with a value wins.
  TempDir root;
  const std::string store =
      Schema("NoteStore.sqlite-ios-plaso") + kEntities +
      "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1, ZCREATIONDATE, ZCREATIONDATE1, ZCREATIONDATE3, "
      "ZMODIFICATIONDATE1, ZNOTEDATA) VALUES "
      "(1, 12, 'nine', " + std::string(kSummer) + ", NULL, NULL, " + kSummer + " + 3, 1), "
      "(2, 12, 'twelve', NULL, " + kSummer + " + 60, NULL, " + kSummer + " + 2, 2), "
      "(3, 12, 'fifteen', NULL, NULL, " + kSummer + " + 120, " + kSummer + " + 1, 3), "
      "(4, 12, 'nanoseconds', NULL, NULL, " + kSummer + "000000000, NULL, 4), "
      "(5, 12, 'newest column first', " + kWinter + ", " + kWinter + ", " + kSummer + ", NULL, 5);\n"
      "INSERT INTO ZICNOTEDATA (Z_PK, ZNOTE, ZDATA) VALUES (1, 1, " + SqlBlob(NoteDocumentBlob("a")) + "), (2, 2, " +
      SqlBlob(NoteDocumentBlob("b")) + "), (3, 3, " + SqlBlob(NoteDocumentBlob("c")) + "), (4, 4, NULL);\n";
  for (IndexKind kind : kIndexKinds) {
    const std::string backup = BackupBuilder(kind)
                                   .AddDatabase(kNotesDomain, kNoteStorePath, store)
                                   .Write(root.Path() + (kind == IndexKind::Mbdb ? "mbdb" : "db"));
    ScopedTimeZone newYork("America/New_York");
    ServedBackup served(backup, Service::Current);
    EXPECT_EQ(served.Answer(ContentNote), Expected({
                                              {"2019-07-01 08:00:00", "2019-07-01 08:00:03", "nine", "a", false, ""},
                                              {"2019-07-01 08:01:00", "2019-07-01 08:00:02", "twelve", "b", false, ""},
                                              {"2019-07-01 08:02:00", "2019-07-01 08:00:01", "fifteen", "c", false, ""},
                                              {"2019-07-01 08:00:00", "", "nanoseconds", "", false, ""},
                                              {"2019-07-01 08:00:00", "", "newest column first", "", false, ""},
                                          }));
  }
}

TEST(CurrentNotes, AStoreWithoutItsBodyTableStillListsTitles) {
  std::string schema = Schema("NoteStore.sqlite-ios17");
  const size_t table = schema.find("CREATE TABLE ZICNOTEDATA");
  ASSERT_NE(table, std::string::npos);
  schema.erase(table, schema.find('\n', table) + 1 - table);
  while (schema.find("ON ZICNOTEDATA") != std::string::npos) {
    const size_t index = schema.rfind('\n', schema.find("ON ZICNOTEDATA")) + 1;
    schema.erase(index, schema.find('\n', index) + 1 - index);
  }
  TempDir root;
  const std::string store = schema + kEntities +
                            "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1, ZCREATIONDATE3, "
                            "ZMODIFICATIONDATE1, ZNOTEDATA) VALUES (1, 12, 'kept', " + kSummer + ", " + kSummer +
                            ", 7), (2, 12, 'no data row', NULL, NULL, NULL), (3, 15, NULL, NULL, NULL, NULL);\n";
  ScopedTimeZone utc("UTC");
  ServedBackup served(
      BackupBuilder(IndexKind::ManifestDb).AddDatabase(kNotesDomain, kNoteStorePath, store).Write(root.Path() + "b"),
      Service::Current);
  EXPECT_EQ(served.Answer(ContentNote), Expected({
                                            {"2019-07-01 12:00:00", "2019-07-01 12:00:00", "kept", "", false, ""},
                                            {"", "", "no data row", "", false, ""},
                                        }));
}

TEST(CurrentNotes, DamagedBodiesAreEmptyAndTheOtherNotesKeepTheirs) {
  const std::string good = NoteDocumentBlob("still here");
  const std::string bodies[] = {
      good.substr(0, good.size() - 6),                      // gzip cut short
      std::string("\x1F\x8B\x08\x00garbage after a gzip magic", 30),
      std::string("bplist00\xD0\x08", 10),                  // a property list
      Gzip(NoteDocument("text").substr(0, 9)),              // a document cut short
      NoteStoreBody("old-style layout"),                    // no valid document
      std::string(300, '\xA5'),
  };
  std::string rows;
  int key = 1;
  for (const std::string& body : bodies) {
    rows += "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1, ZNOTEDATA) VALUES (" + std::to_string(key) +
            ", 12, 'damaged', " + std::to_string(key) + ");\n";
    rows += "INSERT INTO ZICNOTEDATA (Z_PK, ZDATA) VALUES (" + std::to_string(key) + ", " + SqlBlob(body) + ");\n";
    ++key;
  }
  rows += "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1, ZNOTEDATA) VALUES (99, 12, 'fine', 99);\n"
          "INSERT INTO ZICNOTEDATA (Z_PK, ZDATA) VALUES (99, " + SqlBlob(good) + ");\n";
  const std::string store = Schema("NoteStore.sqlite-ios17") + kEntities + rows;
  TempDir root;
  ScopedTimeZone utc("UTC");
  ServedBackup served(BackupBuilder(IndexKind::Mbdb)
                          .AddDatabase(kNotesDomain, kNoteStorePath, store)
                          .Write(root.Path() + "b"),
                      Service::Current);
  std::vector<Note> expected(std::size(bodies), {"", "", "damaged", "", false, ""});
  expected.push_back({"", "", "fine", "still here", false, ""});
  EXPECT_EQ(served.Answer(ContentNote), Expected(expected));
}

TEST(CurrentNotes, NotesKeptOnlyInTheWalAreListed) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string base = Schema("NoteStore.sqlite-ios17") + kEntities +
                             "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1, ZCREATIONDATE3, "
                             "ZMODIFICATIONDATE1, ZNOTEDATA) VALUES (1, 12, 'in the file', " + kSummer + ", " +
                             kSummer + ", 1);\n"
                             "INSERT INTO ZICNOTEDATA (Z_PK, ZDATA) VALUES (1, " + SqlBlob(NoteDocumentBlob("one")) +
                             ");\n";
    const std::string wal = "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1, ZCREATIONDATE3, "
                            "ZMODIFICATIONDATE1, ZNOTEDATA) VALUES (2, 12, 'in the log', " + std::string(kWinter) +
                            ", " + kWinter + ", 2);\n"
                            "INSERT INTO ZICNOTEDATA (Z_PK, ZDATA) VALUES (2, " + SqlBlob(NoteDocumentBlob("two")) +
                            ");\n";
    const std::string backup =
        BackupBuilder(kind).AddDatabaseWithWal(kNotesDomain, kNoteStorePath, base, wal).Write(root.Path() + "b");
    const std::string before = SnapshotTree(backup);
    ScopedTimeZone utc("UTC");
    {
      ServedBackup served(backup, Service::Current);
      EXPECT_EQ(served.Answer(ContentNote),
                Expected({
                    {"2020-01-15 12:00:00", "2020-01-15 12:00:00", "in the log", "two", false, ""},
                    {"2019-07-01 12:00:00", "2019-07-01 12:00:00", "in the file", "one", false, ""},
                }));
    }
    EXPECT_EQ(SnapshotTree(backup), before);
  }
}

TEST(CurrentNotes, ANoteStoreInAnyFolderIsRead) {
  const std::string store = Schema("NoteStore.sqlite-ios17") + kEntities +
                            "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1) VALUES (1, 12, 'nested');\n";
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    ServedBackup served(BackupBuilder(kind)
                            .AddDatabase(kNotesDomain, "Library/Notes/NoteStore.sqlite", store)
                            .AddDatabase(kNotesDomain, "Library/Notes/OldNoteStore.sqlite", store)
                            .Write(root.Path() + "b"),
                        Service::Current);
    EXPECT_EQ(served.Answer(ContentNote), Expected({{"", "", "nested", "", false, ""}}));
  }
}

TEST(CurrentNotes, ABackupWithoutNotesAnswersAnEmptyList) {
  TempDir root;
  ServedBackup served(BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "b"), Service::Current);
  EXPECT_EQ(served.Answer(ContentNote), "[]");
}

}  // namespace
}  // namespace yhtest
