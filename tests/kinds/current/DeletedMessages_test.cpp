#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "kinds/AddressBookSql.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const char kSmsPath[] = "Library/SMS/sms.db";
const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};

// Nanosecond dates since 2001 of 2019-07-01 12:mm:ss UTC.
std::string Nanos(int minute, int second = 0) {
  return std::to_string(583675200LL + minute * 60 + second) + "000000000";
}

// The tables in which iOS 16 and later keep a deleted message for 30 days.
const char kKeeperTables[] =
    "CREATE TABLE chat_recoverable_message_join (chat_id INTEGER, message_id INTEGER, delete_date INTEGER, "
    "ck_sync_state INTEGER DEFAULT 0, PRIMARY KEY (chat_id, message_id));\n"
    "CREATE TABLE recoverable_message_part (chat_id INTEGER, message_id INTEGER, part_index INTEGER, "
    "delete_date INTEGER, part_text BLOB NOT NULL, ck_sync_state INTEGER DEFAULT 0, "
    "PRIMARY KEY (chat_id, message_id, part_index));\n";

std::string Insert(int id, int handle, const std::string& text, int minute, int fromMe) {
  return "INSERT INTO message (ROWID, guid, text, handle_id, date, is_from_me, service) VALUES (" +
         std::to_string(id) + ", 'g" + std::to_string(id) + "', '" + text + "', " + std::to_string(handle) + ", " +
         Nanos(minute) + ", " + std::to_string(fromMe) + ", 'iMessage');\n";
}

std::string Conversations() {
  return "PRAGMA secure_delete=OFF;\n" + Schema("sms.db-ios18") + kKeeperTables +
         "INSERT INTO handle (ROWID, id, service) VALUES (1, '+16175550199', 'iMessage'), "
         "(2, '+447946000000', 'iMessage'), (3, '+15550003', 'SMS');\n"
         "INSERT INTO chat (ROWID, guid, style, chat_identifier, display_name) VALUES "
         "(1, 'iMessage;-;+16175550199', 45, '+16175550199', NULL), (2, 'iMessage;+;chat123', 43, 'chat123', 'Trip');\n"
         "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (1, 1), (2, 1), (2, 2);\n" +
         Insert(1, 1, "Hi", 0, 0) + Insert(2, 1, "Deleted in a freeblock", 1, 1) + Insert(3, 1, "Still here", 2, 0) +
         Insert(4, 2, "Group kept", 3, 0) + Insert(5, 2, "Recently deleted", 4, 0) +
         Insert(6, 3, "Orphan deleted", 5, 0) + Insert(7, 0, "Nobody deleted", 6, 0) + Insert(8, 1, "Last", 7, 1) +
         "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 1), (1, 2), (1, 3), (2, 4), (1, 8);\n"
         "INSERT INTO chat_recoverable_message_join (chat_id, message_id, delete_date) VALUES (2, 5, " +
         Nanos(30) + ");\n"
         "DELETE FROM message WHERE ROWID IN (2, 6, 7); DELETE FROM chat_message_join WHERE message_id = 2;\n";
}

struct Deleted {
  std::string text;
  int minute;
  int type;
  std::string sender, senderName, from, deletedDate;
  bool earlierVersion = false;
};

// One conversation of the deleted answer: its keys as the live answer has
// them, each message with its deletion's.
std::string Conversation(const std::string& id, const std::string& phone, const std::string& another,
                         const std::vector<Deleted>& messages, const std::string& participants, bool group,
                         const std::string& displayName, const std::string& hour) {
  std::string text = "{\"id\":\"" + id + "\",\"phone\":\"" + phone + "\",\"another\":\"" + another + "\",\"message\":[";
  for (size_t at = 0; at < messages.size(); ++at) {
    const Deleted& m = messages[at];
    char minute[8];
    std::snprintf(minute, sizeof minute, "%02d", m.minute);
    text += std::string(at ? "," : "") + "{\"country\":\"\",\"service\":\"iMessage\",\"text\":\"" + m.text +
            "\",\"date\":\"2019-07-01 " + hour + ":" + minute + ":00\",\"type\":" + std::to_string(m.type) +
            "u,\"sender\":\"" + m.sender + "\",\"sender_name\":\"" + m.senderName +
            "\",\"date_read\":\"\",\"date_delivered\":\"\",\"deleted_from\":\"" +
            m.from + "\",\"deleted_date\":\"" + m.deletedDate + "\"" + (m.earlierVersion ? ",\"earlier_version\":true" : "") +
            "}";
  }
  return text + "],\"participants\":[" + participants + "],\"group\":" + (group ? "true" : "false") +
         ",\"display_name\":\"" + displayName + "\"}";
}

// A freeblock keeps a message but not its rowid, so it is listed under its
// handle; the recently deleted one stays in its group chat; one without
// handle or chat is under "unknown".
std::string ExpectedDeleted(const std::string& hour) {
  const std::string ada = "{\"address\":\"+16175550199\",\"name\":\"Ada\"}";
  return "[" +
         Conversation("unknown", "", "", {{"Nobody deleted", 6, 0, "", "", "freeblock", ""}}, "", false, "", hour) +
         "," +
         Conversation("+15550003", "+15550003", "", {{"Orphan deleted", 5, 0, "+15550003", "", "freeblock", ""}},
                      "{\"address\":\"+15550003\",\"name\":\"\"}", false, "", hour) +
         "," +
         Conversation("+16175550199", "+16175550199", "Ada", {{"Deleted in a freeblock", 1, 1, "", "", "freeblock", ""}},
                      ada, false, "", hour) +
         "," +
         Conversation("chat123", "+16175550199, +447946000000", "Ada, +447946000000",
                      {{"Recently deleted", 4, 0, "+447946000000", "", "recently-deleted", "2019-07-01 " + hour + ":30:00"}},
                      ada + ",{\"address\":\"+447946000000\",\"name\":\"\"}", true, "Trip", hour) +
         "]";
}

BackupBuilder ConversationsBackup(IndexKind kind) {
  BackupBuilder builder(kind);
  builder.AddDatabase("HomeDomain", kSmsPath, Conversations())
      .AddDatabase("HomeDomain", kAddressBookPath, AddressBook().PersonWithNumber(1, "Ada", "'+1 (617) 555-0199'").Sql());
  return builder;
}

const std::pair<const char*, const char*> kZones[] = {{"UTC", "12"}, {"America/New_York", "08"}};

TEST(DeletedMessages, EachPlaceAMessageIsKeptUnderUtcAndSummerTime) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = ConversationsBackup(kind).Write(root.Path() + "b");
    const std::string before = SnapshotTree(backup);
    for (const auto& [zone, hour] : kZones) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      EXPECT_EQ(served.DeletedAnswer(ContentSms), ExpectedDeleted(hour)) << zone;
    }
    EXPECT_EQ(SnapshotTree(backup), before);
  }
}

TEST(DeletedMessages, TheSameFromAnEncryptedBackup) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = ConversationsBackup(kind).Encrypt({"pw", 1, 1}).Write(root.Path() + "b");
    const std::string before = SnapshotTree(backup);
    ScopedTimeZone timeZone("UTC");
    ServedBackup served(backup, Service::Current, "pw");
    EXPECT_EQ(served.DeletedAnswer(ContentSms), ExpectedDeleted("12"));
    EXPECT_EQ(SnapshotTree(backup), before);
  }
}

// Since iOS 16 the device shows a recently deleted message only in its
// Recently Deleted list: the live answer leaves it out.
TEST(DeletedMessages, RecentlyDeletedMessagesLeaveTheLiveAnswer) {
  TempDir root;
  const std::string backup = ConversationsBackup(IndexKind::ManifestDb).Write(root.Path() + "b");
  ScopedTimeZone timeZone("UTC");
  ServedBackup served(backup, Service::Current);
  const std::string live = served.Answer(ContentSms);
  EXPECT_EQ(live.find("Recently deleted"), std::string::npos) << live;
  EXPECT_NE(live.find("Group kept"), std::string::npos) << live;
  EXPECT_EQ(live.find("deleted_from"), std::string::npos) << live;
}

// Rows of the -wal: a message sent and deleted while the log was written,
// and the earlier text of an edited message; a message whose row changed
// without changing what it shows is not an earlier version.
TEST(DeletedMessages, FramesOfTheWalAndEarlierVersionsWhoseContentDiffers) {
  const std::string base = "PRAGMA secure_delete=OFF;\n" + Schema("sms.db-ios18") +
                           "INSERT INTO handle (ROWID, id, service) VALUES (1, '+16175550199', 'iMessage');\n"
                           "INSERT INTO chat (ROWID, guid, style, chat_identifier) VALUES "
                           "(1, 'iMessage;-;+16175550199', 45, '+16175550199');\n"
                           "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (1, 1);\n" +
                           Insert(1, 1, "Hi", 0, 0) + Insert(2, 1, "Read me", 1, 0) +
                           "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 1), (1, 2);\n";
  const std::string wal = Insert(3, 1, "Sent then deleted", 2, 1) +
                          "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 3);\n"
                          "DELETE FROM message WHERE ROWID = 3;\n"
                          "DELETE FROM chat_message_join WHERE message_id = 3;\n"
                          "UPDATE message SET text = 'Hi, edited' WHERE ROWID = 1;\n"
                          "UPDATE message SET is_read = 1 WHERE ROWID = 2;\n";
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup =
        BackupBuilder(kind).AddDatabaseWithWal("HomeDomain", kSmsPath, base, wal).Write(root.Path() + "b");
    const std::string before = SnapshotTree(backup);
    for (const auto& [zone, hour] : kZones) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      EXPECT_EQ(served.DeletedAnswer(ContentSms),
                "[" +
                    Conversation("+16175550199", "+16175550199", "",
                                 {{"Hi", 0, 0, "+16175550199", "", "wal", "", true},
                                  {"Sent then deleted", 2, 1, "", "", "wal", ""}},
                                 "{\"address\":\"+16175550199\",\"name\":\"\"}", false, "", hour) +
                    "]")
          << zone;
      const std::string live = served.Answer(ContentSms);
      EXPECT_NE(live.find("Hi, edited"), std::string::npos) << live;
    }
    EXPECT_EQ(SnapshotTree(backup), before);
  }
}

// A deleted message whose join to its chat is still live is placed in that
// chat, beside joins of other chats' live messages that have no part in it.
TEST(DeletedMessages, ALiveJoinPlacesADeletedMessageInItsChat) {
  const std::string base = "PRAGMA secure_delete=OFF;\n" + Schema("sms.db-ios18") +
                           "INSERT INTO handle (ROWID, id, service) VALUES (1, '+16175550199', 'iMessage'), "
                           "(2, '+447946000000', 'iMessage');\n"
                           "INSERT INTO chat (ROWID, guid, style, chat_identifier) VALUES "
                           "(1, 'iMessage;-;+16175550199', 45, '+16175550199'), (2, 'iMessage;+;chat9', 43, 'chat9');\n"
                           "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (1, 1), (2, 1), (2, 2);\n" +
                           Insert(1, 1, "Hi", 0, 0) + Insert(2, 2, "In the group", 1, 0) +
                           "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 1), (2, 2);\n";
  const std::string wal = "DELETE FROM message WHERE ROWID = 2;\n";
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabaseWithWal("HomeDomain", kSmsPath, base, wal)
                                 .Write(root.Path() + "b");
  ScopedTimeZone timeZone("UTC");
  ServedBackup served(backup, Service::Current);
  const std::string both = "{\"address\":\"+16175550199\",\"name\":\"\"},{\"address\":\"+447946000000\",\"name\":\"\"}";
  EXPECT_EQ(served.DeletedAnswer(ContentSms),
            "[" +
                Conversation("chat9", "+16175550199, +447946000000", "+16175550199, +447946000000",
                             {{"In the group", 1, 0, "+447946000000", "", "wal", ""}}, both, true, "", "12") +
                "]");
}

// Whole pages of a conversation deleted at once become freelist pages;
// their cells keep their rowids, so the recovered joins place them in their
// chat. Nearly every deleted text still in the file comes back, each once,
// and nothing else: a live message's cell copied when pages were merged is
// not a deleted message.
TEST(DeletedMessages, WholePagesOnTheFreelistComeBackInTheirChat) {
  std::string sql = "PRAGMA secure_delete=OFF;\n" + Schema("sms.db-ios18") +
                    "INSERT INTO handle (ROWID, id, service) VALUES (1, '+16175550199', 'iMessage'), "
                    "(2, '+447946000000', 'iMessage');\n"
                    "INSERT INTO chat (ROWID, guid, style, chat_identifier, display_name) VALUES "
                    "(2, 'iMessage;+;chat123', 43, 'chat123', 'Trip');\n"
                    "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (2, 1), (2, 2);\nBEGIN;\n";
  for (int id = 1; id <= 300; ++id) {
    sql += Insert(id, 1 + id % 2, "Message number " + std::to_string(id) + " of a long conversation", id % 60, 0) +
           "INSERT INTO chat_message_join (chat_id, message_id) VALUES (2, " + std::to_string(id) + ");\n";
  }
  sql += "COMMIT;\nDELETE FROM message WHERE ROWID BETWEEN 51 AND 250;\n"
         "DELETE FROM chat_message_join WHERE message_id BETWEEN 51 AND 250;\n";
  TempDir root;
  const BackupBuilder builder = BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kSmsPath, sql);
  const std::string backup = builder.Write(root.Path() + "b");
  const std::string file = ReadBytes(backup + builder.StoredPath("HomeDomain", kSmsPath));
  ScopedTimeZone timeZone("UTC");
  ServedBackup served(backup, Service::Current);
  const std::string answer = served.DeletedAnswer(ContentSms);
  size_t inTheFile = 0;
  size_t recovered = 0;
  for (int id = 1; id <= 300; ++id) {
    const std::string text = "Message number " + std::to_string(id) + " of";
    const size_t at = answer.find("\"" + text);
    if (id <= 50 || id > 250 || file.find(text) == std::string::npos) {
      EXPECT_EQ(at, std::string::npos) << id;
      continue;
    }
    ++inTheFile;
    recovered += at != std::string::npos;
    if (at != std::string::npos) {
      EXPECT_EQ(answer.find("\"" + text, at + 1), std::string::npos) << id;
    }
  }
  EXPECT_GT(inTheFile, 150u);
  EXPECT_GE(recovered * 100, inTheFile * 95) << recovered << " of " << inTheFile;
  const size_t chat = answer.find("{\"id\":\"chat123\"");
  ASSERT_NE(chat, std::string::npos) << answer;
  size_t inTheChat = 0;
  for (size_t at = answer.find("\"deleted_from\":\"freelist\"", chat); at != std::string::npos;
       at = answer.find("\"deleted_from\":\"freelist\"", at + 1)) {
    ++inTheChat;
  }
  EXPECT_GT(inTheChat, 0u);
}

// A database SQLite refuses (its header zeroed) still gives its live rows
// in the live answer and its deleted rows here, read from its pages.
TEST(DeletedMessages, ADatabaseSqliteRefusesAnswersThroughItsPages) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const BackupBuilder builder = ConversationsBackup(kind);
    const std::string backup = builder.Write(root.Path() + "b");
    ScopedTimeZone timeZone("UTC");
    const RefusedAnswers answers =
        AnswersOnceRefused(backup, backup + builder.StoredPath("HomeDomain", kSmsPath), ContentSms);
    EXPECT_EQ(answers.live, answers.liveBefore);
    EXPECT_EQ(answers.deleted, ExpectedDeleted("12"));
  }
}

}  // namespace
}  // namespace yhtest
