#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kinds/AddressBookSql.h"
#include "support/AttributedBodyBlob.h"
#include "support/BackupBuilder.h"
#include "support/NoteStoreBody.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const char kSmsPath[] = "Library/SMS/sms.db";
const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};

struct Message {
  std::string service, text, date;
  int type;
  std::string sender, senderName;
  std::string country = "";
  std::string dateRead = "", dateDelivered = "";
};

struct Party {
  std::string address, name;
};

struct Chat {
  std::string id, phone, another;
  std::vector<Message> messages;
  std::vector<Party> participants;
  bool group;
  std::string displayName;
};

std::string Expected(const std::vector<Chat>& chats) {
  std::string text = "[";
  for (const Chat& chat : chats) {
    if (text.size() > 1) text += ",";
    text += "{\"id\":\"" + chat.id + "\",\"phone\":\"" + chat.phone + "\",\"another\":\"" + chat.another + "\"";
    text += ",\"message\":[";
    for (size_t at = 0; at < chat.messages.size(); ++at) {
      const Message& m = chat.messages[at];
      text += std::string(at ? "," : "") + "{\"country\":\"" + m.country + "\",\"service\":\"" + m.service +
              "\",\"text\":\"" + m.text + "\",\"date\":\"" + m.date + "\",\"type\":" + std::to_string(m.type) +
              "u,\"sender\":\"" + m.sender + "\",\"sender_name\":\"" + m.senderName + "\",\"date_read\":\"" +
              m.dateRead + "\",\"date_delivered\":\"" + m.dateDelivered + "\"}";
    }
    text += "]";
    text += ",\"participants\":[";
    for (size_t at = 0; at < chat.participants.size(); ++at) {
      text += std::string(at ? "," : "") + "{\"address\":\"" + chat.participants[at].address + "\",\"name\":\"" +
              chat.participants[at].name + "\"}";
    }
    text += std::string("],\"group\":") + (chat.group ? "true" : "false") + ",\"display_name\":\"" +
            chat.displayName + "\"}";
  }
  return text + "]";
}

std::string AddressBookSql() {
  return AddressBook()
      .PersonWithNumber(1, "Ada", "'+1 (617) 555-0199'")
      .Person(2, "First", "'Grace'")
      .PropertyValue(20, 2, AddressBook::kEmail, 0, "'Grace@Example.org'")
      .Sql();
}

// Nanosecond dates since 2001 of 2019-07-01 12:mm:ss UTC.
std::string Nanos(int minute, int second = 0) {
  return std::to_string(583675200LL + minute * 60 + second) + "000000000";
}

// iOS 13 and later: a chat with one person, a group chat, texts kept only
// as attributed strings (emoji and a character outside the BMP), and a
// message that belongs to no chat.
std::string ModernSms(const std::string& schema) {
  const bool country = schema != "sms.db-ios18";
  std::string sql = Schema(schema);
  sql += "INSERT INTO handle (ROWID, id, service) VALUES (1, '+16175550199', 'iMessage'), "
         "(2, 'grace@example.org', 'iMessage'), (3, '+447946000000', 'SMS');\n"
         "INSERT INTO chat (ROWID, guid, style, chat_identifier, display_name) VALUES "
         "(1, 'iMessage;-;+16175550199', 45, '+16175550199', NULL), (2, 'iMessage;+;chat123', 43, 'chat123', 'Trip');\n"
         "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (1, 1), (2, 2), (2, 3);\n";
  const auto message = [&](int id, int handle, const std::string& text, const std::string& body,
                           const std::string& date, int fromMe, const std::string& service) {
    sql += "INSERT INTO message (ROWID, guid, text, attributedBody, handle_id, date, is_from_me, service" +
           std::string(country ? ", country" : "") + ") VALUES (" + std::to_string(id) + ", 'g" +
           std::to_string(id) + "', " + text + ", " + body + ", " + std::to_string(handle) + ", " + date + ", " +
           std::to_string(fromMe) + ", '" + service + "'" + (country ? ", NULL" : "") + ");\n";
  };
  message(1, 1, "'Hi'", "NULL", Nanos(0), 0, "iMessage");
  message(2, 0, "NULL", SqlBlob(AttributedBodyBlob("Hello \xF0\x9F\x91\x8B world")), Nanos(1), 1, "iMessage");
  message(3, 2, "'Group hi'", "NULL", Nanos(2), 0, "iMessage");
  message(4, 3, "''", SqlBlob(AttributedBodyBlob("\xF0\x9D\x84\x9E music")), Nanos(2, 20), 0, "iMessage");
  message(5, 0, "'Bye'", "NULL", Nanos(2, 40), 1, "iMessage");
  message(6, 3, "'orphan'", "NULL", Nanos(2, 50), 0, "SMS");
  sql += "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 1), (1, 2), (2, 3), (2, 4), (2, 5);\n";
  return sql;
}

std::string ExpectedModern(const std::string& hour) {
  const std::string day = "2019-07-01 " + hour;
  return Expected({
      {"+16175550199", "+16175550199", "Ada",
       {{"iMessage", "Hi", day + ":00:00", 0, "+16175550199", "Ada"},
        {"iMessage", "Hello \xF0\x9F\x91\x8B world", day + ":01:00", 1, "", ""}},
       {{"+16175550199", "Ada"}}, false, ""},
      {"+447946000000", "+447946000000", "", {{"SMS", "orphan", day + ":02:50", 0, "+447946000000", ""}},
       {{"+447946000000", ""}}, false, ""},
      {"chat123", "grace@example.org, +447946000000", "Grace, +447946000000",
       {{"iMessage", "Group hi", day + ":02:00", 0, "grace@example.org", "Grace"},
        {"iMessage", "\xF0\x9D\x84\x9E music", day + ":02:20", 0, "+447946000000", ""},
        {"iMessage", "Bye", day + ":02:40", 1, "", ""}},
       {{"grace@example.org", "Grace"}, {"+447946000000", ""}}, true, "Trip"},
  });
}

TEST(CurrentMessages, EveryConversationOfIos13And18WithGroupsAndAttributedTexts) {
  for (const char* schema : {"sms.db-ios13", "sms.db-ios18"}) {
    for (IndexKind kind : kIndexKinds) {
      TempDir root;
      const std::string backup = BackupBuilder(kind)
                                     .AddDatabase("HomeDomain", kSmsPath, ModernSms(schema))
                                     .AddDatabase("HomeDomain", kAddressBookPath, AddressBookSql())
                                     .Write(root.Path() + "b");
      for (const auto& [zone, hour] : {std::pair<const char*, const char*>{"UTC", "12"}, {"America/New_York", "08"}}) {
        ScopedTimeZone timeZone(zone);
        ServedBackup served(backup, Service::Current);
        EXPECT_EQ(served.Answer(ContentSms), ExpectedModern(hour)) << schema << " " << zone;
      }
    }
  }
}

TEST(CurrentMessages, TheDescribedServiceFindsNoConversationOnIos18) {
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kSmsPath, ModernSms("sms.db-ios18")).Write(root.Path() + "b");
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(described.Answer(ContentSms), "[]");
}

TEST(CurrentMessages, Ios7SecondsAndADatabaseWithoutChats) {
  TempDir root;
  std::string sql = Schema("sms.db-ios7");
  sql += "INSERT INTO handle (ROWID, id, service) VALUES (1, '6175550199', 'SMS');\n"
         "INSERT INTO message (ROWID, guid, text, handle_id, date, is_from_me, service, country) VALUES "
         "(1, 'a', 'seconds', 1, 583675200, 0, 'SMS', 'us'), (2, 'b', 'later', 1, 583675260, 1, 'SMS', 'us');\n"
         "DROP TABLE chat_message_join; DROP TABLE chat_handle_join; DROP TABLE chat;\n";
  const std::string backup = BackupBuilder(IndexKind::Mbdb)
                                 .AddDatabase("HomeDomain", kSmsPath, sql)
                                 .AddDatabase("HomeDomain", kAddressBookPath, AddressBookSql())
                                 .Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentSms),
            Expected({{"6175550199", "6175550199", "Ada",
                       {{"SMS", "seconds", "2019-07-01 12:00:00", 0, "6175550199", "Ada", "us"},
                        {"SMS", "later", "2019-07-01 12:01:00", 1, "", "", "us"}},
                       {{"6175550199", "Ada"}}, false, ""}}));
}

// Joins listed in any order find their messages; a message joined to two
// chats is listed once, in the chat of the lower id; a damaged table whose
// message ids do not come in order (a text id reads as 0) still finds its chat.
TEST(CurrentMessages, JoinsInAnyOrderAndIdsOutOfOrderFindTheirChat) {
  std::string sql =
      "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT);\n"
      "CREATE TABLE chat (ROWID INTEGER PRIMARY KEY, guid TEXT, style INTEGER, chat_identifier TEXT, display_name TEXT);\n"
      "CREATE TABLE chat_handle_join (chat_id INTEGER, handle_id INTEGER);\n"
      "CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER);\n"
      "CREATE TABLE message (ROWID, text TEXT, handle_id INTEGER, date INTEGER, is_from_me INTEGER, service TEXT);\n"
      "INSERT INTO handle VALUES (1, '+15550001'), (2, '+15550002'), (3, '+15550003');\n"
      "INSERT INTO chat VALUES (1, 'g1', 45, '+15550001', NULL), (2, 'g2', 45, '+15550002', NULL);\n"
      "INSERT INTO chat_handle_join VALUES (1, 1), (2, 2);\n"
      "INSERT INTO chat_message_join VALUES (2, 7), (1, 5), (2, 5), (1, 0);\n";
  sql += "INSERT INTO message VALUES (5, 'five', 1, " + Nanos(0) + ", 0, 'SMS'), (7, 'seven', 2, " + Nanos(1) +
         ", 0, 'SMS'), ('x', 'text id', 1, " + Nanos(2) + ", 1, 'SMS'), (9, 'nine', 3, " + Nanos(3) + ", 0, 'SMS');\n";
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kSmsPath, sql).Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentSms),
            Expected({{"+15550001", "+15550001", "",
                       {{"SMS", "five", "2019-07-01 12:00:00", 0, "+15550001", ""},
                        {"SMS", "text id", "2019-07-01 12:02:00", 1, "", ""}},
                       {{"+15550001", ""}}, false, ""},
                      {"+15550002", "+15550002", "", {{"SMS", "seven", "2019-07-01 12:01:00", 0, "+15550002", ""}},
                       {{"+15550002", ""}}, false, ""},
                      {"+15550003", "+15550003", "", {{"SMS", "nine", "2019-07-01 12:03:00", 0, "+15550003", ""}},
                       {{"+15550003", ""}}, false, ""}}));
}

TEST(CurrentMessages, Ios5TextMessagesInGroupsAndIMessagesInTheMadridColumns) {
  TempDir root;
  std::string sql = Schema("sms.db-ios5-legacy");
  sql += "INSERT INTO msg_group (ROWID, type) VALUES (1, 0);\n"
         "INSERT INTO group_member (group_id, address) VALUES (1, '+16175550199');\n"
         "INSERT INTO message (ROWID, address, date, text, flags, group_id, is_madrid, country) VALUES "
         "(1, '+16175550199', 1561982400, 'old sms', 2, 1, 0, 'us'), "
         "(2, '+16175550199', 1561982460, 'reply', 3, 1, 0, 'us');\n"
         "INSERT INTO message (ROWID, text, date, is_madrid, madrid_handle, madrid_flags, madrid_service) VALUES "
         "(3, 'imsg', 583675500, 1, 'grace@example.org', 12289, 'iMessage'), "
         "(4, 'sent imsg', 583675560, 1, 'grace@example.org', 36869, 'iMessage');\n";
  const std::string backup = BackupBuilder(IndexKind::Mbdb)
                                 .AddDatabase("HomeDomain", kSmsPath, sql)
                                 .AddDatabase("HomeDomain", kAddressBookPath, AddressBookSql())
                                 .Write(root.Path() + "b");
  ScopedTimeZone newYork("America/New_York");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentSms),
            Expected({{"+16175550199", "+16175550199", "Ada",
                       {{"SMS", "old sms", "2019-07-01 08:00:00", 0, "+16175550199", "Ada", "us"},
                        {"SMS", "reply", "2019-07-01 08:01:00", 1, "", "", "us"}},
                       {{"+16175550199", "Ada"}}, false, ""},
                      {"grace@example.org", "grace@example.org", "Grace",
                       {{"iMessage", "imsg", "2019-07-01 08:05:00", 0, "grace@example.org", "Grace"},
                        {"iMessage", "sent imsg", "2019-07-01 08:06:00", 1, "", ""}},
                       {{"grace@example.org", "Grace"}}, false, ""}}));
}

// An iOS 5 multimedia message keeps its text in its text parts, joined in
// part order, and its files as Library/SMS/Parts/xx/yy/<message>-<part>.<ext>;
// only iMessages record when they were read and delivered.
TEST(CurrentMessages, Ios5MultimediaPartsAndIMessageReadAndDeliveredDates) {
  TempDir root;
  std::string sql = Schema("sms.db-ios5-legacy");
  sql += "INSERT INTO msg_group (ROWID, type) VALUES (1, 0);\n"
         "INSERT INTO group_member (group_id, address) VALUES (1, '+16175550199');\n"
         "INSERT INTO message (ROWID, address, date, text, flags, group_id, is_madrid) VALUES "
         "(5, '+16175550199', 1561982520, NULL, 2, 1, 0);\n"
         "INSERT INTO msg_pieces (message_id, part_id, content_type, data, content_loc) VALUES "
         "(5, 3, 'text/plain', CAST('second line' AS BLOB), 'text_0002.txt'), "
         "(5, 0, 'application/smil', CAST('<smil/>' AS BLOB), 'smil.xml'), "
         "(5, 1, 'image/jpeg', NULL, 'IMG_0001.jpg'), "
         "(5, 2, 'text/plain', CAST('Look at this' AS BLOB), 'text_0001.txt'), "
         "(5, 4, 'video/3gpp', NULL, 'clip.3gp');\n"
         "INSERT INTO message (ROWID, text, date, is_madrid, madrid_handle, madrid_flags, madrid_service, "
         "madrid_date_read, madrid_date_delivered) VALUES "
         "(6, 'read', 583675500, 1, 'grace@example.org', 36869, 'iMessage', 583675620, 583675510);\n";
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase("HomeDomain", kSmsPath, sql)
      .AddFile("MediaDomain", "Library/SMS/Parts/a5/14/5-1.jpg", "jpeg bytes")
      .AddFile("MediaDomain", "Library/SMS/Parts/a5/14/5-1-preview.jpg", "preview");
  const std::string backup = builder.Write(root.Path() + "b");
  const std::string picture = backup + builder.StoredPath("MediaDomain", "Library/SMS/Parts/a5/14/5-1.jpg");
  ScopedTimeZone newYork("America/New_York");
  ServedBackup served(backup, Service::Current);
  const std::string attachments =
      "[{\"file_name\":\"IMG_1.jpg\",\"path\":\"" + picture +
      "\",\"size\":10u,\"type\":0u,\"query_path\":\"Library/SMS/Parts/a5/14/5-1.jpg\",\"present\":true,"
      "\"mime_type\":\"image/jpeg\",\"original_name\":\"IMG_0001.jpg\",\"date\":\"\"},"
      "{\"file_name\":\"IMG_2.3gp\",\"path\":\"\",\"size\":0u,\"type\":1u,\"query_path\":\"\",\"present\":false,"
      "\"mime_type\":\"video/3gpp\",\"original_name\":\"clip.3gp\",\"date\":\"\"}]";
  EXPECT_EQ(served.Answer(ContentSmsAttachment), attachments);
  std::string expected = Expected(
      {{"+16175550199", "+16175550199", "",
        {{"SMS", "Look at this\nsecond line", "2019-07-01 08:02:00", 0, "+16175550199", ""}},
        {{"+16175550199", ""}}, false, ""},
       {"grace@example.org", "grace@example.org", "",
        {{"iMessage", "read", "2019-07-01 08:05:00", 1, "", "", "", "2019-07-01 08:07:00", "2019-07-01 08:05:10"}},
        {{"grace@example.org", ""}}, false, ""}});
  // The multimedia message carries its two files.
  const std::string carried = "\"date_delivered\":\"\"";
  expected.insert(expected.find(carried) + carried.size(), ",\"attachments\":" + attachments);
  EXPECT_EQ(served.Answer(ContentSms), expected);
}

// Until iOS 14 a message's own country is empty and its handle's holds it;
// a chat whose messages are gone keeps an empty list; the dates a message was
// read and delivered (nanoseconds since 2001) are local times, "" when 0.
TEST(CurrentMessages, CountryFromTheHandleReadAndDeliveredDatesAndEmptyChats) {
  std::string sql = Schema("sms.db-ios13");
  sql += "INSERT INTO handle (ROWID, id, country, service) VALUES (1, '+16175550199', 'us', 'iMessage');\n"
         "INSERT INTO chat (ROWID, guid, style, chat_identifier) VALUES (1, 'c1', 45, '+16175550199'), "
         "(2, 'c2', 45, 'gone@example.org');\n"
         "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (1, 1);\n"
         "INSERT INTO message (ROWID, guid, text, handle_id, date, date_read, date_delivered, is_from_me, service, "
         "country) VALUES (1, 'a', 'hi', 1, " + Nanos(0) + ", " + Nanos(5) + ", 0, 0, 'iMessage', NULL), "
         "(2, 'b', 'back', 1, " + Nanos(1) + ", " + Nanos(7) + ", " + Nanos(1, 3) + ", 1, 'iMessage', 'gb');\n"
         "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 1), (1, 2);\n";
  for (const auto& [zone, hour] : {std::pair<const char*, std::string>{"UTC", "12"}, {"Europe/Berlin", "14"}}) {
    TempDir root;
    const std::string backup =
        BackupBuilder(IndexKind::Mbdb).AddDatabase("HomeDomain", kSmsPath, sql).Write(root.Path() + "b");
    ScopedTimeZone timeZone(zone);
    ServedBackup served(backup, Service::Current);
    const std::string day = "2019-07-01 " + hour;
    EXPECT_EQ(served.Answer(ContentSms),
              Expected({{"+16175550199", "+16175550199", "",
                         {{"iMessage", "hi", day + ":00:00", 0, "+16175550199", "", "us", day + ":05:00", ""},
                          {"iMessage", "back", day + ":01:00", 1, "", "", "gb", day + ":07:00", day + ":01:03"}},
                         {{"+16175550199", ""}}, false, ""},
                        {"gone@example.org", "gone@example.org", "", {}, {{"gone@example.org", ""}}, false, ""}}))
        << zone;
  }
}

// A card with only an organisation names its numbers by it, as the phone does.
TEST(CurrentMessages, AnOrganisationsCardNamesItsNumber) {
  std::string sql = Schema("sms.db-ios13");
  sql += "INSERT INTO handle (ROWID, id, service) VALUES (1, '+18005550100', 'SMS');\n"
         "INSERT INTO message (ROWID, guid, text, handle_id, date, service) VALUES (1, 'a', 'Your code', 1, " +
         Nanos(0) + ", 'SMS');\n";
  const std::string book = AddressBook()
                               .Person(1, "Organization", "'Analytical Bank'")
                               .Label(1, "'_$!<Work>!$_'")
                               .Value(1, 1, 1, "'+1 800 555 0100'")
                               .Sql();
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabase("HomeDomain", kSmsPath, sql)
                                 .AddDatabase("HomeDomain", kAddressBookPath, book)
                                 .Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentSms),
            Expected({{"+18005550100", "+18005550100", "Analytical Bank",
                       {{"SMS", "Your code", "2019-07-01 12:00:00", 0, "+18005550100", "Analytical Bank"}},
                       {{"+18005550100", "Analytical Bank"}}, false, ""}}));
}

TEST(CurrentMessages, RowsKeptOnlyInTheWalAreRead) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string base = Schema("sms.db-ios13") +
                             "INSERT INTO handle (ROWID, id, service) VALUES (1, '555', 'SMS');\n"
                             "INSERT INTO message (ROWID, guid, text, handle_id, date) VALUES (1, 'a', 'in the file', 1, " +
                             Nanos(0) + ");\n";
    const std::string wal = "INSERT INTO message (ROWID, guid, text, handle_id, date) VALUES (2, 'b', 'in the log', 1, " +
                            Nanos(1) + ");\n";
    const std::string backup =
        BackupBuilder(kind).AddDatabaseWithWal("HomeDomain", kSmsPath, base, wal).Write(root.Path() + "b");
    const std::string before = SnapshotTree(backup);
    ScopedTimeZone utc("UTC");
    {
      ServedBackup current(backup, Service::Current);
      EXPECT_EQ(current.Answer(ContentSms),
                Expected({{"555", "555", "",
                           {{"", "in the file", "2019-07-01 12:00:00", 0, "555", ""},
                            {"", "in the log", "2019-07-01 12:01:00", 0, "555", ""}},
                           {{"555", ""}}, false, ""}}));
      ServedBackup described(backup, Service::Described);
      EXPECT_EQ(described.Answer(ContentSms), "[]");  // no chat table rows: the described query finds nothing
    }
    EXPECT_EQ(SnapshotTree(backup), before);
  }
}

}  // namespace
}  // namespace yhtest
