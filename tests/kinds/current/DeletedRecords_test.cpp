#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "kinds/AddressBookSql.h"
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
const char kHistoryDb[] = "Library/Safari/History.db";
const char kUnsecured[] = "PRAGMA secure_delete=OFF;\n";

// Seconds since 2001 of 2019-07-01 12:00 UTC.
const int64_t kSummer = 583675200;

std::string At(int minutes) { return std::to_string(kSummer + minutes * 60); }

// People kept, one deleted with its values (its cell's rowid is lost with
// its first bytes, so its values no longer join), and one deleted while the
// log was written (whole in an earlier page image, with its values).
std::string People() {
  return kUnsecured + AddressBook()
                          .PersonWithNumber(1, "Ada", "'+1 (617) 555-0199'")
                          .Person(2, "First, Last, Organization", "'Charles', 'Babbage', 'Analytical Engines'")
                          .Value(2, 2, 1, "'+44 20 7946 0018'")
                          .PersonWithNumber(4, "Grace", "'+1 555 0100'")
                          .Person(5, "First, Last", "'Alan', 'Turing'")
                          .PropertyValue(5, 5, AddressBook::kEmail, 0, "'alan@example.org'")
                          .PersonWithNumber(6, "Mary", "'+1 555 0101'")
                          .Sql() +
         "DELETE FROM ABPerson WHERE ROWID = 2; DELETE FROM ABMultiValue WHERE record_id = 2;\n";
}
const char kPeopleLog[] = "DELETE FROM ABPerson WHERE ROWID = 5; DELETE FROM ABMultiValue WHERE record_id = 5;\n";

// An iOS 17 note store: a folder, the Recently Deleted folder, notes kept,
// one in Recently Deleted, one marked for deletion, and one erased with its
// body row while the log was written.
const char kEntities[] =
    "INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_NAME, Z_SUPER, Z_MAX) VALUES "
    "(3, 'ICCloudSyncingObject', 0, 20), (12, 'ICNote', 3, 20), (14, 'ICAccount', 3, 20), (15, 'ICFolder', 3, 20);\n";

std::string NoteStore() {
  std::string sql = kUnsecured + Schema("NoteStore.sqlite-ios17") + kEntities +
                    "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE2, ZFOLDERTYPE) VALUES "
                    "(2, 15, 'Trips', 0), (3, 15, 'Recently Deleted', 1);\n";
  const auto note = [&sql](int id, const std::string& title, int minutes, int folder, int marked) {
    sql += "INSERT INTO ZICCLOUDSYNCINGOBJECT (Z_PK, Z_ENT, ZTITLE1, ZCREATIONDATE3, ZMODIFICATIONDATE1, ZFOLDER, "
           "ZNOTEDATA, ZMARKEDFORDELETION, ZIDENTIFIER) VALUES (" +
           std::to_string(id) + ", 12, '" + title + "', " + At(0) + ", " + At(minutes) + ", " +
           std::to_string(folder) + ", " + std::to_string(id) + ", " + std::to_string(marked) + ", 'note-" +
           std::to_string(id) + "');\nINSERT INTO ZICNOTEDATA (Z_PK, Z_ENT, ZNOTE, ZDATA) VALUES (" +
           std::to_string(id) + ", 19, " + std::to_string(id) + ", " + SqlBlob(NoteDocumentBlob(title + " text")) +
           ");\n";
  };
  note(10, "Kept", 1, 2, 0);
  note(11, "In the trash", 2, 3, 0);
  note(12, "Marked", 3, 2, 1);
  note(13, "Erased", 4, 2, 0);
  note(14, "Last", 5, 2, 0);
  return sql;
}
const char kNoteStoreLog[] = "DELETE FROM ZICCLOUDSYNCINGOBJECT WHERE Z_PK = 13; DELETE FROM ZICNOTEDATA WHERE Z_PK = 13;\n";

// An iOS 7 notes database with a note flagged deleted and one erased (its
// body row erased too, and its id with its cell's first bytes).
std::string LegacyNotes() {
  return kUnsecured + Schema("notes.sqlite-ios7") +
         "INSERT INTO ZSTORE (Z_PK, ZNAME) VALUES (1, 'Notes');\n"
         "INSERT INTO ZNOTE (Z_PK, ZCREATIONDATE, ZMODIFICATIONDATE, ZTITLE, ZBODY, ZSTORE, ZDELETEDFLAG) VALUES "
         "(1, " + At(0) + ", " + At(10) + ", 'Old list', 1, 1, 0), (2, " + At(0) + ", " + At(11) +
         ", 'Old flagged', 2, 1, 1), (3, " + At(0) + ", " + At(12) + ", 'Old erased', 3, 1, 0), (4, " + At(0) + ", " +
         At(13) + ", 'Old last', 4, 1, 0);\n"
         "INSERT INTO ZNOTEBODY (Z_PK, ZCONTENT) VALUES (1, '<div>milk</div>'), (2, '<div>flagged</div>'), "
         "(3, '<div>erased</div>'), (4, '<div>last</div>');\n"
         "DELETE FROM ZNOTE WHERE Z_PK = 3; DELETE FROM ZNOTEBODY WHERE Z_PK = 3;\n";
}

// Pages with their visits and a tombstone of a page whose rows are gone;
// the log then deletes a page with its visit, and a visit of a kept page.
std::string History() {
  return kUnsecured + Schema("History.db-safari") +
         "INSERT INTO history_items (id, url, visit_count, daily_visit_counts, should_recompute_derived_visit_counts, "
         "visit_count_score) VALUES (1, 'https://example.org/kept', 2, X'', 0, 0), "
         "(2, 'https://example.org/deleted', 1, X'', 0, 0), (3, 'https://example.org/last', 1, X'', 0, 0);\n"
         "INSERT INTO history_visits (id, history_item, visit_time, title) VALUES "
         "(1, 1, " + At(1) + ", 'Kept'), (2, 1, " + At(2) + ", 'Kept, visited again'), (3, 2, " + At(3) +
         ", 'Deleted page'), (4, 3, " + At(4) + ", 'Last');\n"
         "INSERT INTO history_tombstones (start_time, end_time, url) VALUES (" + At(5) + ", " + At(6) +
         ", 'https://example.org/tombstone'), (" + At(7) + ", " + At(8) + ", NULL);\n";
}
const char kHistoryLog[] = "DELETE FROM history_visits WHERE id IN (2, 3); DELETE FROM history_items WHERE id = 2;\n";

std::string Backup(const TempDir& root, IndexKind kind, bool encrypted) {
  BackupBuilder builder(kind);
  builder.AddDatabaseWithWal("HomeDomain", kAddressBookPath, People(), kPeopleLog)
      .AddDatabaseWithWal(kNotesDomain, "NoteStore.sqlite", NoteStore(), kNoteStoreLog)
      .AddDatabase("HomeDomain", "Library/Notes/notes.sqlite", LegacyNotes())
      .AddDatabaseWithWal("HomeDomain", kHistoryDb, History(), kHistoryLog);
  if (encrypted) builder.Encrypt({"pw", 1, 1});
  return builder.Write(root.Path() + (encrypted ? "encrypted" : "plain"));
}

std::string Person(int id, const std::string& name, const std::string& organization, const std::string& properties,
                   const std::string& from) {
  return "{\"id\":" + std::to_string(id) + "u,\"name\":\"" + name + "\",\"organization\":\"" + organization +
         "\",\"department\":\"\",\"note\":\"\",\"birthday\":\"\",\"jobTitle\":\"\",\"nickName\":\"\","
         "\"creationDate\":\"\",\"properties\":{" + properties +
         "},\"modification_date\":\"\",\"picture_path\":\"\",\"picture_mime_type\":\"\",\"picture_size\":0u,"
         "\"deleted_from\":\"" + from +
         "\",\"deleted_date\":\"\"}";
}

std::string Note(const std::string& modified, const std::string& title, const std::string& body,
                 const std::string& folder, const std::string& from, const std::string& hour) {
  return "{\"create_date\":\"2019-07-01 " + hour + ":00:00\",\"modify_date\":\"2019-07-01 " + hour + ":" + modified +
         ":00\",\"title\":\"" + title + "\",\"body\":\"" + body + "\",\"locked\":false,\"folder\":\"" + folder +
         "\",\"deleted_from\":\"" + from + "\",\"deleted_date\":\"\"}";
}

std::string Page(const std::string& url, const std::string& title, const std::string& minute, int count,
                 const std::string& visits, const std::string& hour) {
  return "{\"url\":\"https://example.org/" + url + "\",\"type\":\"history\",\"title\":\"" + title +
         "\",\"lastVisitedDate\":\"2019-07-01 " + hour + ":" + minute + ":00\",\"visitCount\":" +
         std::to_string(count) + "u,\"visits\":[" + visits + "],\"deleted_from\":\"" +
         (visits.empty() ? "recently-deleted" : "wal") + "\",\"deleted_date\":\"\"}";
}

std::string Visit(const std::string& minute, const std::string& title, const std::string& hour) {
  return "{\"date\":\"2019-07-01 " + hour + ":" + minute + ":00\",\"title\":\"" + title + "\"}";
}

const std::pair<const char*, const char*> kZones[] = {{"UTC", "12"}, {"America/New_York", "08"}};

TEST(DeletedRecords, ContactsNotesAndSafariOfEachIndexKindPlainAndEncrypted) {
  for (IndexKind kind : kIndexKinds) {
    for (bool encrypted : {false, true}) {
      TempDir root;
      const std::string backup = Backup(root, kind, encrypted);
      const std::string before = SnapshotTree(backup);
      for (const auto& [zone, hour] : kZones) {
        ScopedTimeZone timeZone(zone);
        ServedBackup served(backup, Service::Current, encrypted ? "pw" : nullptr);
        SCOPED_TRACE(std::string(zone) + (encrypted ? " encrypted" : " plain"));
        EXPECT_EQ(served.DeletedAnswer(ContentContact),
                  "[" + Person(0, "Charles Babbage", "Analytical Engines", "", "freeblock") + "," +
                      Person(5, "Alan Turing", "", "\"email\":\"alan@example.org\"", "wal") + "]");
        EXPECT_EQ(served.DeletedAnswer(ContentNote),
                  "[" + Note("11", "Old flagged", "flagged", "Notes", "recently-deleted", hour) + "," +
                      Note("12", "Old erased", "", "Notes", "freeblock", hour) + "," +
                      Note("04", "Erased", "Erased text", "Trips", "wal", hour) + "," +
                      Note("03", "Marked", "Marked text", "Trips", "recently-deleted", hour) + "," +
                      Note("02", "In the trash", "In the trash text", "Recently Deleted", "recently-deleted", hour) +
                      "]");
        EXPECT_EQ(served.DeletedAnswer(ContentSafariHistory),
                  "[" + Page("tombstone", "", "06", 0, "", hour) + "," +
                      Page("deleted", "Deleted page", "03", 1, Visit("03", "Deleted page", hour), hour) + "," +
                      Page("kept", "Kept, visited again", "02", 2, Visit("02", "Kept, visited again", hour), hour) +
                      "]");
        const std::string notes = served.Answer(ContentNote);
        EXPECT_EQ(notes.find("In the trash"), std::string::npos) << notes;
        EXPECT_NE(notes.find("Kept"), std::string::npos) << notes;
      }
      EXPECT_EQ(SnapshotTree(backup), before);
    }
  }
}

}  // namespace
}  // namespace yhtest
