#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "kinds/AddressBookSql.h"
#include "kinds/WhatsAppDumps.h"
#include "kinds/WhatsAppSql.h"
#include "support/BackupBuilder.h"
#include "support/NoteStoreBody.h"
#include "support/PlistDump.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};
// Chat 1 with Ada: a message of every kind, one out of order, a starred
// one, a reply to the owner's message and one deleted for everyone; media
// present, missing from the index and listed without a file.
ChatStorageSql PersonChat() {
  ChatStorageSql sql;
  sql.Session(1, kAda, "'Ada Lovelace'")
      .Media(kMediaColumns,
             "1, 'Media/447700900123@s.whatsapp.net/a/b/photo.jpg', "
             "'Media/447700900123@s.whatsapp.net/a/b/photo.thumb', 'Sunset', 'image/jpeg', NULL, "
             "NULL, NULL, NULL")
      .Media(kMediaColumns,
             "2, 'Media/447700900123@s.whatsapp.net/a/b/clip.mp4', NULL, NULL, 'video/mp4', NULL, "
             "NULL, NULL, NULL")
      .Media(kMediaColumns,
             "3, '/Media/447700900123@s.whatsapp.net/a/b/voice.opus', NULL, NULL, "
             "'audio/ogg; codecs=opus', NULL, NULL, NULL, NULL")
      .Media(kMediaColumns,
             "4, 'Media/447700900123@s.whatsapp.net/a/b/song.mp3', NULL, NULL, 'audio/mpeg', NULL, "
             "NULL, NULL, NULL")
      .Media(kMediaColumns,
             "5, 'Media/447700900123@s.whatsapp.net/a/b/doc.pdf', NULL, 'report.pdf', "
             "'application/pdf', NULL, NULL, NULL, NULL")
      .Media(kMediaColumns,
             "6, NULL, NULL, NULL, 'BEGIN:VCARD\nVERSION:3.0\nFN:Mary Somerville\nTEL;type=CELL;"
             "waid=16175550199:+1 617-555-0199\nTEL:+44 20 7946 0018\nEND:VCARD', NULL, NULL, NULL, "
             "NULL")
      .Media(kMediaColumns, "7, NULL, NULL, NULL, NULL, NULL, 51.5, -0.125, NULL")
      .Media(kMediaColumns,
             "8, 'Media/447700900123@s.whatsapp.net/a/b/s.webp', NULL, NULL, 'image/webp', NULL, "
             "NULL, NULL, NULL")
      .Media(kMediaColumns, "9, NULL, NULL, NULL, NULL, NULL, NULL, NULL, " + SqlBlob(ProtoField(5, "A2")));
  const std::string ada = kAda;
  const auto message = [&](int id, bool sent, int minute, int type, const std::string& text, int starred,
                           const std::string& stanza, const std::string& media) {
    sql.Message(kMessageColumns, std::to_string(id) + ", 1, " + (sent ? "1" : "0") + ", " + At(minute) + ", " +
                                     std::to_string(type) + ", " + text + ", " + std::to_string(starred) + ", " +
                                     (sent ? "NULL" : ada) + ", '" + stanza + "', NULL, " + media);
  };
  message(1, false, 0, 0, "'Hello, Ada here'", 0, "A1", "NULL");
  message(2, true, 2, 0, "'Hi!'", 1, "A2", "NULL");
  message(3, false, 3, 1, "NULL", 0, "A3", "1");
  message(4, true, 4, 2, "'Watch'", 0, "A4", "2");
  message(5, false, 5, 3, "NULL", 0, "A5", "3");
  message(6, false, 6, 3, "NULL", 0, "A6", "4");
  message(7, true, 7, 8, "NULL", 0, "A7", "5");
  message(8, false, 8, 4, "'Mary'", 0, "A8", "6");
  message(9, true, 9, 5, "NULL", 0, "A9", "7");
  message(10, false, 10, 15, "NULL", 0, "A10", "8");
  message(11, true, 11, 7, "'See https://example.org/page now'", 0, "A11", "NULL");
  message(12, false, 12, 0, "'Yes, that one'", 0, "A12", "9");
  message(13, false, 13, 14, "NULL", 0, "A13", "NULL");
  message(14, false, 1, 0, "'Out of order'", 0, "A14", "NULL");
  return sql;
}

std::string WritePersonBackup(const TempDir& root, BackupBuilder& builder) {
  builder.AddDatabase(kWhatsAppDomain, kChatStorage, PersonChat().Sql())
      .AddFile(kWhatsAppDomain, kMedia + "photo.jpg", "\xFF\xD8 sunset")
      .AddFile(kWhatsAppDomain, kMedia + "photo.thumb", "thumb")
      .AddMissingFile(kWhatsAppDomain, kMedia + "clip.mp4")
      .AddFile(kWhatsAppDomain, kMedia + "voice.opus", "OggS voice")
      .AddFile(kWhatsAppDomain, kMedia + "doc.pdf", "%PDF-1.4")
      .AddFile(kWhatsAppDomain, kMedia + "s.webp", "RIFF sticker")
      .AddFile("HomeDomain", kMedia + "song.mp3", "another domain");
  return builder.Write(root.Path() + "b");
}

std::string Item(const ServedBackup& served, int type, uint32_t at) {
  plist_t answer = served.Tree(type);
  const std::string dump = Dump(plist_array_get_item(answer, at));
  plist_free(answer);
  return dump;
}

TEST(CurrentWhatsApp, APersonsChatHoldsEveryKindOfMessageOldestFirstWithItsMedia) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    BackupBuilder builder(kind);
    const std::string backup = WritePersonBackup(root, builder);
    const auto stored = [&](const std::string& name) {
      return backup + builder.StoredPath(kWhatsAppDomain, kMedia + name);
    };
    for (const Zone& zone : kZones) {
      ScopedTimeZone timeZone(zone.name);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      const std::string ada = "447700900123";
      const std::string name = "Ada Lovelace";
      const std::string messages[] = {
          MessageDump(zone, {"Hello, Ada here", 0, false, ada, name, "A1", "text"}),
          MessageDump(zone, {"Out of order", 1, false, ada, name, "A14", "text"}),
          MessageDump(zone, {"Hi!", 2, true, "", "", "A2", "text", true}),
          MessageDump(zone, {"Sunset", 3, false, ada, name, "A3", "image", false,
                             ",\"caption\":\"Sunset\"" +
                                 AttachmentDump(zone, 3,
                                                {"photo.jpg", stored("photo.jpg"), 9, true, kMedia + "photo.jpg", true,
                                                 "image/jpeg", "", kMedia + "photo.thumb", stored("photo.thumb")})}),
          MessageDump(
              zone, {"Watch", 4, true, "", "", "A4", "video", false,
                     AttachmentDump(zone, 4,
                                    {"clip.mp4", "", 0, false, kMedia + "clip.mp4", false, "video/mp4", "", "", ""})}),
          MessageDump(zone, {"", 5, false, ada, name, "A5", "voice note", false,
                             AttachmentDump(zone, 5,
                                            {"voice.opus", stored("voice.opus"), 10, false, kMedia + "voice.opus", true,
                                             "audio/ogg; codecs=opus", "", "", ""})}),
          MessageDump(
              zone, {"", 6, false, ada, name, "A6", "audio", false,
                     AttachmentDump(zone, 6,
                                    {"song.mp3", "", 0, false, kMedia + "song.mp3", false, "audio/mpeg", "", "", ""})}),
          MessageDump(zone, {"", 7, true, "", "", "A7", "document", false,
                             AttachmentDump(zone, 7,
                                            {"doc.pdf", stored("doc.pdf"), 8, false, kMedia + "doc.pdf", true,
                                             "application/pdf", "report.pdf", "", ""})}),
          MessageDump(zone, {"Mary", 8, false, ada, name, "A8", "contact card", false,
                             ",\"contact_name\":\"Mary Somerville\",\"contact_numbers\":[\"+1 617-555-0199\","
                             "\"+44 20 7946 0018\"]"}),
          MessageDump(zone,
                      {"", 9, true, "", "", "A9", "location", false, ",\"latitude\":51.5r,\"longitude\":-0.125r"}),
          MessageDump(zone, {"", 10, false, ada, name, "A10", "sticker", false,
                             AttachmentDump(zone, 10,
                                            {"s.webp", stored("s.webp"), 12, true, kMedia + "s.webp", true,
                                             "image/webp", "", "", ""})}),
          MessageDump(zone, {"See https://example.org/page now", 11, true, "", "", "A11", "link", false,
                             ",\"url\":\"https://example.org/page\""}),
          MessageDump(zone, {"Yes, that one", 12, false, ada, name, "A12", "text", false,
                             ",\"quoted_id\":\"A2\",\"quoted_sender\":\"\",\"quoted_text\":\"Hi!\""}),
          MessageDump(zone, {"", 13, false, ada, name, "A13", "deleted"}),
      };
      std::string all;
      for (const std::string& message : messages) all += (all.empty() ? "" : ",") + message;
      EXPECT_EQ(served.Answer(ContentWhatsApp),
                "[" + ChatDump("447700900123@s.whatsapp.net", ada, name, all, {{ada, name}}, false, "", "person") + "]")
          << zone.name;
    }
  }
}

// Chats of every other kind, named by their partner name, the name people
// gave themselves, the device's address book or WhatsApp's copy of it.
std::string WriteChatsBackup(const TempDir& root, IndexKind kind) {
  ChatStorageSql sql;
  sql.Session(1, kAda, "'Ada Lovelace'")
      .Session(2, kGroup, "'Engines'")
      .Session(3, "'status@broadcast'", "NULL")
      .Session(4, "'1234567890@broadcast'", "'My list'")
      .Session(5, "'15550001111@s.whatsapp.net'", "''")
      .Session(6, "'447700900999@s.whatsapp.net'", "NULL")
      .Session(7, "'447700900555@s.whatsapp.net'", "NULL")
      .Member(1, 2, kAda)
      .Member(2, 2, kMary)
      .PushName(kMary, "'Mary S'")
      .PushName("'15550001111@s.whatsapp.net'", "'Charlie'")
      .Media(kMediaColumns, "1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, " +
                                SqlBlob(ProtoField(5, "G20") + ProtoField(6, "447700900123@s.whatsapp.net")))
      .Media(kMediaColumns, "2, NULL, NULL, NULL, NULL, NULL, NULL, NULL, X'2A05'")
      .Message(kMessageColumns,
               "20, 2, 0, " + At(20) + ", 0, 'Group hello', 0, " + std::string(kGroup) + ", 'G20', 1, NULL")
      .Message(kMessageColumns, "21, 2, 0, " + At(21) + ", 0, 'Replying', 1, " + std::string(kGroup) + ", 'G21', 2, 1")
      .Message(kMessageColumns, "22, 2, 1, " + At(22) + ", 6, NULL, 0, NULL, 'G22', NULL, 2")
      .Message(kMessageColumns,
               "30, 3, 0, " + At(30) + ", 0, 'My status', 0, " + std::string(kAda) + ", 'S30', NULL, NULL")
      .Message(kMessageColumns, "40, 4, 1, " + At(40) + ", 0, 'Announcement', 0, NULL, 'B40', NULL, NULL")
      .Message(kMessageColumns, "60, 6, 0, " + At(50) + ", 10, NULL, 0, NULL, 'Y60', NULL, NULL")
      .Message(kMessageColumns, "70, 99, 0, " + At(55) +
                                    ", 0, 'Lost', 0, '15557770000@s.whatsapp.net', 'L70', "
                                    "NULL, NULL");
  const std::string contacts = Schema("ContactsV2.sqlite-whatsapp-ios15") +
                               "INSERT INTO ZWAADDRESSBOOKCONTACT (Z_PK, ZWHATSAPPID, ZFULLNAME) VALUES "
                               "(1, '447700900555@s.whatsapp.net', 'Charles Babbage'), "
                               "(2, '447700900999@s.whatsapp.net', 'Not Grace');\n";
  return BackupBuilder(kind)
      .AddDatabase(kWhatsAppDomain, kChatStorage, sql.Sql())
      .AddDatabase(kWhatsAppDomain, "ContactsV2.sqlite", contacts)
      .AddDatabase("HomeDomain", kAddressBookPath,
                   AddressBook().PersonWithNumber(1, "Grace", "'+44 7700 900999'").Sql())
      .Write(root.Path() + "b");
}

TEST(CurrentWhatsApp, GroupsStatusBroadcastEmptyAndSystemChatsAreKeptApart) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = WriteChatsBackup(root, kind);
    for (const Zone& zone : kZones) {
      ScopedTimeZone timeZone(zone.name);
      ServedBackup served(backup, Service::Current);
      const std::string ada = "447700900123";
      const std::string mary = "16175550199";
      EXPECT_EQ(Item(served, ContentWhatsApp, 0), ChatDump("447700900123@s.whatsapp.net", ada, "Ada Lovelace", "",
                                                           {{ada, "Ada Lovelace"}}, false, "", "empty"));
      EXPECT_EQ(Item(served, ContentWhatsApp, 1),
                ChatDump("120363000000000001@g.us", ada + ", " + mary, "Engines",
                         MessageDump(zone, {"Group hello", 20, false, ada, "Ada Lovelace", "G20", "text"}) + "," +
                             MessageDump(zone, {"Replying", 21, false, mary, "Mary S", "G21", "text", true,
                                                ",\"quoted_id\":\"G20\",\"quoted_sender\":\"" + ada +
                                                    "\",\"quoted_text\":\"Group hello\""}) +
                             "," + MessageDump(zone, {"", 22, true, "", "", "G22", "system event"}),
                         {{ada, "Ada Lovelace"}, {mary, "Mary S"}}, true, "Engines", "group"))
          << zone.name;
      EXPECT_EQ(Item(served, ContentWhatsApp, 2),
                ChatDump("status@broadcast", "", "",
                         MessageDump(zone, {"My status", 30, false, ada, "Ada Lovelace", "S30", "text"}), {}, false, "",
                         "status"));
      EXPECT_EQ(
          Item(served, ContentWhatsApp, 3),
          ChatDump("1234567890@broadcast", "", "My list",
                   MessageDump(zone, {"Announcement", 40, true, "", "", "B40", "text"}), {}, false, "", "broadcast"));
      EXPECT_EQ(Item(served, ContentWhatsApp, 4), ChatDump("15550001111@s.whatsapp.net", "15550001111", "Charlie", "",
                                                           {{"15550001111", "Charlie"}}, false, "", "empty"));
      EXPECT_EQ(Item(served, ContentWhatsApp, 5),
                ChatDump("447700900999@s.whatsapp.net", "447700900999", "Grace",
                         MessageDump(zone, {"", 50, false, "", "", "Y60", "system event"}), {{"447700900999", "Grace"}},
                         false, "", "system"));
      EXPECT_EQ(Item(served, ContentWhatsApp, 6),
                ChatDump("447700900555@s.whatsapp.net", "447700900555", "Charles Babbage", "",
                         {{"447700900555", "Charles Babbage"}}, false, "", "empty"));
      EXPECT_EQ(Item(served, ContentWhatsApp, 7),
                ChatDump("15557770000@s.whatsapp.net", "15557770000", "15557770000",
                         MessageDump(zone, {"Lost", 55, false, "15557770000", "", "L70", "text"}),
                         {{"15557770000", ""}}, false, "", "person"));
      EXPECT_EQ(Item(served, ContentWhatsApp, 8), "null");
    }
  }
}

// Two chats hold a message of the quoted id, the later chat's read first,
// and the earlier chat holds it twice.
TEST(CurrentWhatsApp, AReplyQuotesTheFirstMessageOfItsIdInChatOrder) {
  ChatStorageSql sql;
  sql.Session(1, kAda, "'Ada'").Session(2, kMary, "'Mary'");
  sql.Media(kMediaColumns, "1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, " + SqlBlob(ProtoField(5, "D1")));
  const auto message = [&](int id, int session, const std::string& from, const std::string& text,
                           const std::string& stanza, const std::string& media) {
    sql.Message(kMessageColumns, std::to_string(id) + ", " + std::to_string(session) + ", 0, " + At(id) + ", 0, '" +
                                     text + "', 0, " + from + ", '" + stanza + "', NULL, " + media);
  };
  message(1, 2, kMary, "first in Mary chat", "D1", "NULL");
  message(2, 1, kAda, "first in Ada chat", "D1", "NULL");
  message(3, 1, kAda, "again in Ada chat", "D1", "NULL");
  message(4, 2, kMary, "Reply", "D4", "1");
  TempDir root;
  ServedBackup served(
      BackupBuilder(IndexKind::ManifestDb).AddDatabase(kWhatsAppDomain, kChatStorage, sql.Sql()).Write(root.Path() + "b"),
      Service::Current);
  const std::string answer = served.Answer(ContentWhatsApp);
  EXPECT_NE(answer.find("\"quoted_id\":\"D1\",\"quoted_sender\":\"447700900123\",\"quoted_text\":\"first in Ada chat\""),
            std::string::npos)
      << answer;
}

TEST(CurrentWhatsApp, TheDescribedServiceAnswersNullAndBackupsWithoutChatsToo) {
  TempDir root;
  BackupBuilder builder(IndexKind::ManifestDb);
  const std::string backup = WritePersonBackup(root, builder);
  ServedBackup described(backup, Service::Described);
  ASSERT_TRUE(described.Analysed());
  EXPECT_EQ(described.Answer(ContentWhatsApp), "null");
  EXPECT_EQ(described.Answer(ContentWhatsAppCalls), "null");
  ServedBackup current(backup, Service::Current);
  EXPECT_EQ(current.Answer(ContentWhatsAppCalls + 1), "null");
  TempDir other;
  ServedBackup none(BackupBuilder(IndexKind::ManifestDb)
                        .AddDatabase("HomeDomain", kChatStorage, PersonChat().Sql())
                        .Write(other.Path() + "b"),
                    Service::Current);
  EXPECT_EQ(none.Answer(ContentWhatsApp), "null");
}

TEST(CurrentWhatsApp, WhatsAppBusinessChatsFollowWhatsAppsOwn) {
  TempDir root;
  ChatStorageSql business;
  business.Session(1, "'15550002222@s.whatsapp.net'", "'Shop'");
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb)
          .AddDatabase("AppDomainGroup-group.net.whatsapp.WhatsAppSMB.shared", kChatStorage, business.Sql())
          .AddDatabase(kWhatsAppDomain, kChatStorage, ChatStorageSql().Session(1, kAda, "'Ada'").Sql())
          .Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(Item(served, ContentWhatsApp, 0), ChatDump("447700900123@s.whatsapp.net", "447700900123", "Ada", "",
                                                       {{"447700900123", "Ada"}}, false, "", "empty"));
  EXPECT_EQ(Item(served, ContentWhatsApp, 1), ChatDump("15550002222@s.whatsapp.net", "15550002222", "Shop", "",
                                                       {{"15550002222", "Shop"}}, false, "", "empty"));
}

TEST(CurrentWhatsApp, RowsKeptOnlyInTheWalAreRead) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup =
        BackupBuilder(kind)
            .AddDatabaseWithWal(kWhatsAppDomain, kChatStorage, ChatStorageSql().Session(1, kAda, "'Ada'").Sql(),
                                ChatStorageSql("")
                                    .Message(kMessageColumns, "1, 1, 1, " + At(0) +
                                                                  ", 0, 'late', 0, NULL, 'W1', "
                                                                  "NULL, NULL")
                                    .Sql())
            .Write(root.Path() + "b");
    ScopedTimeZone utc("UTC");
    ServedBackup served(backup, Service::Current);
    EXPECT_EQ(Item(served, ContentWhatsApp, 0),
              ChatDump("447700900123@s.whatsapp.net", "447700900123", "Ada",
                       MessageDump(kZones[0], {"late", 0, true, "", "", "W1", "text"}), {{"447700900123", "Ada"}},
                       false, "", "person"));
  }
}

// An older or stripped database: messages without media, members, stanza
// ids or stars, and sessions without partner names.
TEST(CurrentWhatsApp, ADatabaseWithoutSomeTablesAndColumnsListsWhatItHas) {
  TempDir root;
  const std::string sql =
      "CREATE TABLE ZWACHATSESSION (Z_PK INTEGER PRIMARY KEY, ZCONTACTJID VARCHAR);\n"
      "CREATE TABLE ZWAMESSAGE (Z_PK INTEGER PRIMARY KEY, ZCHATSESSION INTEGER, ZMESSAGEDATE TIMESTAMP, "
      "ZTEXT VARCHAR, ZMESSAGETYPE INTEGER, ZMEDIAITEM INTEGER);\n"
      "INSERT INTO ZWACHATSESSION VALUES (1, " +
      std::string(kAda) + ");\nINSERT INTO ZWAMESSAGE VALUES (1, 1, " + At(0) + ", 'old', 1, 5);\n";
  ServedBackup served(
      BackupBuilder(IndexKind::Mbdb).AddDatabase(kWhatsAppDomain, kChatStorage, sql).Write(root.Path() + "b"),
      Service::Current);
  ScopedTimeZone utc("UTC");
  EXPECT_EQ(
      Item(served, ContentWhatsApp, 0),
      ChatDump("447700900123@s.whatsapp.net", "447700900123", "447700900123",
               MessageDump(kZones[0], {"old", 0, false, "", "", "", "image", false,
                                       AttachmentDump(kZones[0], 0, {"", "", 0, true, "", false, "", "", "", ""})}),
               {{"447700900123", ""}}, false, "", "person"));
}

TEST(CurrentWhatsApp, DamagedDatabasesAndValuesAnswerWhatCanBeRead) {
  TempDir root;
  ServedBackup damaged(BackupBuilder(IndexKind::ManifestDb)
                           .AddFile(kWhatsAppDomain, kChatStorage, "not a database")
                           .Write(root.Path() + "a"),
                       Service::Current);
  EXPECT_EQ(damaged.Answer(ContentWhatsApp), "[]");
  ChatStorageSql values;
  values.Session(1, kAda, "X'00FF'")
      .Media(kMediaColumns, "1, X'2F', 7, 8, X'FF00', NULL, 'north', X'01', X'2A7F'")
      .Message(kMessageColumns, "1, 1, 'yes', 'soon', 'x', X'41', 'no', 42, X'00', 'me', 1")
      .Message(kMessageColumns, "2, 'one', 0, 1e300, 5, NULL, 0, NULL, NULL, NULL, 1");
  ServedBackup odd(BackupBuilder(IndexKind::ManifestDb)
                       .AddDatabase(kWhatsAppDomain, kChatStorage, values.Sql())
                       .Write(root.Path() + "b"),
                   Service::Current);
  const std::string answer = odd.Answer(ContentWhatsApp);
  EXPECT_NE(answer.find("\"chat_kind\":\"person\""), std::string::npos) << answer;
  EXPECT_EQ(answer.find("quoted"), std::string::npos) << answer;
}

}  // namespace
}  // namespace yhtest
