#include <gtest/gtest.h>

#include <string>

#include "kinds/WhatsAppDumps.h"
#include "kinds/WhatsAppSql.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};
const char kUnsecured[] = "PRAGMA secure_delete=OFF;\n";

std::string Row(int id, const std::string& session, bool sent, int minute, const std::string& text,
                const std::string& from, const std::string& stanza, const std::string& member) {
  return std::to_string(id) + ", " + session + ", " + (sent ? "1" : "0") + ", " + At(minute) + ", 0, '" + text +
         "', 0, " + from + ", '" + stanza + "', " + member + ", NULL";
}

// Ada's chat, a group with Ada and Mary, and Mary's chat. Deleted: a
// message of Ada's chat, Mary's message in the group, Mary's chat with its
// one message, and a message of no chat and no party.
std::string Chats() {
  ChatStorageSql sql(kUnsecured + Schema("ChatStorage.sqlite-whatsapp-ios15"));
  sql.Session(1, kAda, "'Ada Lovelace'")
      .Session(2, kGroup, "'Engines'")
      .Session(3, kMary, "'Mary Somerville'")
      .Member(1, 2, kAda)
      .Member(2, 2, kMary)
      .Message(kMessageColumns, Row(1, "1", false, 0, "Hello", kAda, "A1", "NULL"))
      .Message(kMessageColumns, Row(2, "1", true, 1, "Deleted in a freeblock", "NULL", "A2", "NULL"))
      .Message(kMessageColumns, Row(3, "1", false, 2, "Kept", kAda, "A3", "NULL"))
      .Message(kMessageColumns, Row(4, "2", false, 3, "Group deleted", kGroup, "G4", "2"))
      .Message(kMessageColumns, Row(5, "2", false, 4, "Group kept", kGroup, "G5", "1"))
      .Message(kMessageColumns, Row(6, "3", false, 5, "Deleted with its chat", kMary, "M6", "NULL"))
      .Message(kMessageColumns, Row(7, "NULL", false, 6, "Of nobody", "NULL", "N7", "NULL"))
      .Message(kMessageColumns, Row(8, "1", false, 7, "Last", kAda, "A8", "NULL"));
  return sql.Sql() + "DELETE FROM ZWAMESSAGE WHERE Z_PK IN (2, 4, 6, 7); DELETE FROM ZWACHATSESSION WHERE Z_PK = 3;\n";
}

std::string Marked(const char* from) {
  return std::string(",\"deleted_from\":\"") + from + "\",\"deleted_date\":\"\"";
}

// A deleted message's dump: the live layout with its deletion's keys after
// "starred" and before the keys of its kind.
std::string DeletedDump(const Zone& zone, Said said, const char* from, const std::string& more = "") {
  said.more = Marked(from) + more;
  return MessageDump(zone, said);
}

// Each message joins its chat through its session, a session of its own
// recovered with it, or else the chat of its party; one with neither is
// under "unknown". Chats in the order of their ids.
std::string ExpectedChats(const Zone& zone) {
  const std::string ada = "447700900123";
  const std::string mary = "16175550199";
  return "[" +
         ChatDump("unknown", "", "", DeletedDump(zone, {"Of nobody", 6, false, "", "", "N7", "text"}, "freeblock"), {},
                  false, "", "person") +
         "," +
         ChatDump("120363000000000001@g.us", ada + ", " + mary, "Engines",
                  DeletedDump(zone, {"Group deleted", 3, false, mary, "Mary Somerville", "G4", "text"}, "freeblock"),
                  {{ada, "Ada Lovelace"}, {mary, "Mary Somerville"}}, true, "Engines", "group") +
         "," +
         ChatDump("16175550199@s.whatsapp.net", mary, "Mary Somerville",
                  DeletedDump(zone, {"Deleted with its chat", 5, false, mary, "Mary Somerville", "M6", "text"},
                              "freeblock"),
                  {{mary, "Mary Somerville"}}, false, "", "person") +
         "," +
         ChatDump("447700900123@s.whatsapp.net", ada, "Ada Lovelace",
                  DeletedDump(zone, {"Deleted in a freeblock", 1, true, "", "", "A2", "text"}, "freeblock"),
                  {{ada, "Ada Lovelace"}}, false, "", "person") +
         "]";
}

TEST(DeletedWhatsApp, EachMessageInItsChatUnderUtcAndSummerTimePlainAndEncrypted) {
  for (IndexKind kind : kIndexKinds) {
    for (bool encrypted : {false, true}) {
      TempDir root;
      BackupBuilder builder(kind);
      builder.AddDatabase(kWhatsAppDomain, kChatStorage, Chats());
      if (encrypted) builder.Encrypt({"pw", 1, 1});
      const std::string backup = builder.Write(root.Path() + "b");
      const std::string before = SnapshotTree(backup);
      for (const Zone& zone : kZones) {
        SCOPED_TRACE(std::string(zone.name) + (encrypted ? " encrypted" : " plain"));
        ScopedTimeZone timeZone(zone.name);
        ServedBackup served(backup, Service::Current, encrypted ? "pw" : nullptr);
        EXPECT_EQ(served.DeletedAnswer(ContentWhatsApp), ExpectedChats(zone));
        const std::string live = served.Answer(ContentWhatsApp);
        EXPECT_EQ(live.find("deleted_from"), std::string::npos) << live;
        EXPECT_NE(live.find("Group kept"), std::string::npos) << live;
        EXPECT_EQ(served.DeletedAnswer(ContentWhatsAppCalls), "null");
      }
      EXPECT_EQ(SnapshotTree(backup), before);
    }
  }
}

// A chat database SQLite refuses (its header zeroed) still gives its live
// chats in the live answer and its deleted messages here, from its pages.
TEST(DeletedWhatsApp, ADatabaseSqliteRefusesAnswersThroughItsPages) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    BackupBuilder builder(kind);
    const std::string backup = builder.AddDatabase(kWhatsAppDomain, kChatStorage, Chats()).Write(root.Path() + "b");
    ScopedTimeZone timeZone("UTC");
    const RefusedAnswers answers =
        AnswersOnceRefused(backup, backup + builder.StoredPath(kWhatsAppDomain, kChatStorage), ContentWhatsApp);
    EXPECT_EQ(answers.live, answers.liveBefore);
    EXPECT_NE(answers.live.find("Group kept"), std::string::npos) << answers.live;
    EXPECT_EQ(answers.deleted, ExpectedChats(kZones[0]));
  }
}

// Frames of the -wal: a picture sent and deleted with its medium while the
// log was written, and the earlier text of an edited message; a message
// whose row changed without changing what it shows is not an earlier
// version.
TEST(DeletedWhatsApp, FramesOfTheWalWithTheirMediaAndEarlierVersionsWhoseContentDiffers) {
  ChatStorageSql base(kUnsecured + Schema("ChatStorage.sqlite-whatsapp-ios15"));
  base.Session(1, kAda, "'Ada Lovelace'")
      .Message(kMessageColumns, Row(1, "1", false, 0, "Hello", kAda, "A1", "NULL"))
      .Message(kMessageColumns, Row(2, "1", false, 1, "Read me", kAda, "A2", "NULL"));
  ChatStorageSql wal("");
  wal.Media(kMediaColumns, "1, 'Media/447700900123@s.whatsapp.net/a/b/photo.jpg', NULL, 'Sunset', 'image/jpeg', "
                           "NULL, NULL, NULL, NULL")
      .Message(kMessageColumns, "3, 1, 1, " + At(2) + ", 1, NULL, 0, NULL, 'A3', NULL, 1");
  const std::string log = wal.Sql() +
                          "DELETE FROM ZWAMESSAGE WHERE Z_PK = 3; DELETE FROM ZWAMEDIAITEM WHERE Z_PK = 1;\n"
                          "UPDATE ZWAMESSAGE SET ZTEXT = 'Hello, edited' WHERE Z_PK = 1;\n"
                          "UPDATE ZWAMESSAGE SET ZMESSAGESTATUS = 8 WHERE Z_PK = 2;\n";
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    BackupBuilder builder(kind);
    const std::string backup = builder.AddDatabaseWithWal(kWhatsAppDomain, kChatStorage, base.Sql(), log)
                                   .AddFile(kWhatsAppDomain, kMedia + "photo.jpg", "\xFF\xD8 sunset")
                                   .Write(root.Path() + "b");
    const std::string stored = backup + builder.StoredPath(kWhatsAppDomain, kMedia + "photo.jpg");
    const std::string before = SnapshotTree(backup);
    for (const Zone& zone : kZones) {
      ScopedTimeZone timeZone(zone.name);
      ServedBackup served(backup, Service::Current);
      const std::string ada = "447700900123";
      EXPECT_EQ(served.DeletedAnswer(ContentWhatsApp),
                "[" +
                    ChatDump("447700900123@s.whatsapp.net", ada, "Ada Lovelace",
                             DeletedDump(zone, {"Hello", 0, false, ada, "Ada Lovelace", "A1", "text"}, "wal",
                                         ",\"earlier_version\":true") +
                                 "," +
                                 DeletedDump(zone, {"Sunset", 2, true, "", "", "A3", "image"}, "wal",
                                             ",\"caption\":\"Sunset\"" +
                                                 AttachmentDump(zone, 2,
                                                                {"photo.jpg", stored, 9, true, kMedia + "photo.jpg",
                                                                 true, "image/jpeg", "", "", ""})),
                             {{ada, "Ada Lovelace"}}, false, "", "person") +
                    "]")
          << zone.name;
      const std::string live = served.Answer(ContentWhatsApp);
      EXPECT_NE(live.find("Hello, edited"), std::string::npos) << live;
    }
    EXPECT_EQ(SnapshotTree(backup), before);
  }
}

}  // namespace
}  // namespace yhtest
