#include "kinds/Sms.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/ColumnHelpers.h"
#include "common/DateHelpers.h"
#include "kinds/AddressBookSql.h"
#include "kinds/Contact.h"
#include "kinds/KindFixture.h"
#include "support/BackupBuilder.h"
#include "support/PlistDump.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const char kSmsPath[] = "Library/SMS/sms.db";
const char kHomeDomain[] = "HomeDomain";
const char kOtherDomain[] = "AppDomainGroup-group.com.example.messages";

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};

std::string Name(IndexKind kind) { return kind == IndexKind::Mbdb ? "Manifest.mbdb" : "Manifest.db"; }

std::string Date2001(int32_t seconds) {
  char* text = Convert2001GMTtoDate(seconds);
  std::string copy(text);
  std::free(text);
  return copy;
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

// A message database of the current schema (chat, handle, message) of one
// device generation, then rows. Values are SQL literals.
class MessageDb {
 public:
  explicit MessageDb(const std::string& schema = "sms.db-ios7") : sql_(Schema(schema)) {}

  MessageDb& Chat(int id, const std::string& identifier) {
    sql_ += "INSERT INTO chat (ROWID, guid, chat_identifier) VALUES (" + std::to_string(id) + ", 'chat-" +
            std::to_string(id) + "', " + Quoted(identifier) + ");\n";
    return *this;
  }
  MessageDb& Handle(int id, const std::string& address, const std::string& service = "SMS") {
    sql_ += "INSERT INTO handle (ROWID, id, service) VALUES (" + std::to_string(id) + ", " + Quoted(address) + ", " +
            Quoted(service) + ");\n";
    return *this;
  }
  MessageDb& Message(int id, int handle, const std::string& text, const std::string& date, int fromMe,
                     const std::string& country = "'us'", const std::string& service = "'SMS'") {
    sql_ += "INSERT INTO message (ROWID, guid, handle_id, text, date, is_from_me, country, service) VALUES (" +
            std::to_string(id) + ", 'message-" + std::to_string(id) + "', " + std::to_string(handle) + ", " + text +
            ", " + date + ", " + std::to_string(fromMe) + ", " + country + ", " + service + ");\n";
    return *this;
  }

  const std::string& Sql() const { return sql_; }

 private:
  std::string sql_;
};

// The iOS 5 message database, whose iMessages carry "madrid_" columns and
// whose conversations are madrid_chat rows.
class MadridDb {
 public:
  MadridDb() : sql_(Schema("sms.db-ios5-legacy")) {}

  MadridDb& Chat(int id, const std::string& identifier) {
    sql_ += "INSERT INTO madrid_chat (ROWID, chat_identifier) VALUES (" + std::to_string(id) + ", " +
            Quoted(identifier) + ");\n";
    return *this;
  }
  MadridDb& Message(int id, const std::string& handle, const std::string& text, const std::string& date,
                    const std::string& flags, const std::string& country = "'us'",
                    const std::string& service = "'iMessage'") {
    sql_ += "INSERT INTO message (ROWID, madrid_handle, text, date, madrid_flags, country, madrid_service) VALUES (" +
            std::to_string(id) + ", " + handle + ", " + text + ", " + date + ", " + flags + ", " + country + ", " +
            service + ");\n";
    return *this;
  }
  MadridDb& Sql(const std::string& more) {
    sql_ += more;
    return *this;
  }

  const std::string& Sql() const { return sql_; }

 private:
  std::string sql_;
};

std::string Said(const std::string& text, const std::string& date, int type, const std::string& country = "us",
                 const std::string& service = "SMS") {
  return "{\"country\":\"" + country + "\",\"service\":\"" + service + "\",\"text\":\"" + text + "\",\"date\":\"" +
         date + "\",\"type\":" + std::to_string(type) + "u}";
}

std::string Conversation(const std::string& id, const std::string& phone, const std::string& another,
                         const std::vector<std::string>& messages) {
  std::string dump = "{\"id\":\"" + id + "\",\"phone\":\"" + phone + "\",\"another\":\"" + another + "\"";
  if (!messages.empty()) {
    dump += ",\"message\":[";
    for (size_t i = 0; i < messages.size(); ++i) dump += (i ? "," : "") + messages[i];
    dump += "]";
  }
  return dump + "}";
}

class SmsTest : public ::testing::Test {
 protected:
  SmsTest() { Renew(); }

  // A fresh pair of extractors, for a test that makes several backups.
  void Renew() {
    contact_ = std::make_unique<Contact>();
    sms_ = std::make_unique<Sms>();
    sms_->SetContact(contact_.get());
  }

  // Writes the backup with the address book below and reads its index.
  BackupDevice* Analyse(BackupBuilder& builder, IndexKind kind) {
    builder.AddDatabase(kHomeDomain, kAddressBookPath, addressBook_.Sql());
    backup_ = builder.Write(dir_.Path() + "backup" + std::to_string(++backups_));
    device_ = std::make_unique<AnalysedDevice>(backup_, kind);
    EXPECT_TRUE(device_->IndexRead());
    return device_->Get();
  }
  BackupDevice* AnalyseSms(const std::string& sql, IndexKind kind) {
    BackupBuilder builder(kind);
    builder.AddDatabase(kHomeDomain, kSmsPath, sql);
    return Analyse(builder, kind);
  }

  TempDir dir_;
  int backups_ = 0;
  std::string backup_;
  std::unique_ptr<AnalysedDevice> device_;
  AddressBook addressBook_ = std::move(AddressBook().PersonWithNumber(1, "Ada", "'+1 (555) 123-4567'"));
  std::unique_ptr<Contact> contact_;
  std::unique_ptr<Sms> sms_;
};

TEST_F(SmsTest, ConversationsAreKeyedByChatAndNamedFromTheAddressBook) {
  for (const char* schema : {"sms.db-ios7", "sms.db-ios13"}) {
    for (IndexKind kind : kIndexKinds) {
      SCOPED_TRACE(std::string(schema) + " " + Name(kind));
      MessageDb db(schema);
      db.Chat(1, "+1 555-123-4567")
          .Chat(2, "(555) 123-4567")
          .Chat(3, "grace@example.com")
          .Handle(1, "+1 555-123-4567")
          .Handle(2, "(555) 123-4567")
          .Handle(3, "grace@example.com", "iMessage")
          .Message(1, 1, "'third'", "300", 1)
          .Message(2, 1, "'first'", "100", 0)
          .Message(3, 2, "'hello'", "150", 0, "'gb'")
          .Message(4, 1, "'second'", "200", 0, "NULL", "'iMessage'")
          .Message(5, 3, "'hi'", "250", 1, "NULL", "'iMessage'");
      Renew();
      const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), kind), 0));
      // Keys in byte order: "(" before "+" before letters. Only "-" and white
      // space leave the address, so the bracketed one finds no contact.
      EXPECT_EQ(result,
                "[" + Conversation("(555) 123-4567", "(555)1234567", "", {Said("hello", Date2001(150), 0, "gb")}) +
                    "," +
                    Conversation("+1 555-123-4567", "+15551234567", "Ada",
                                 {Said("first", Date2001(100), 0), Said("second", Date2001(200), 0, "", "iMessage"),
                                  Said("third", Date2001(300), 1)}) +
                    "," +
                    Conversation("grace@example.com", "grace@example.com", "",
                                 {Said("hi", Date2001(250), 1, "", "iMessage")}) +
                    "]");
    }
  }
}

TEST_F(SmsTest, NullColumnsBecomeEmptyTextsAndTheStartOf2001) {
  MessageDb db;
  db.Chat(1, "+15550100").Handle(1, "+15550100").Message(1, 1, "NULL", "NULL", 0, "NULL", "NULL");
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::ManifestDb), 0));
  EXPECT_EQ(result, "[" + Conversation("+15550100", "+15550100", "", {Said("", Date2001(0), 0, "", "")}) + "]");
}

TEST_F(SmsTest, DatesAreTakenAsSecondsWithoutScaling) {
  // From iOS 11 on the column counts nanoseconds; the value is read as whole
  // seconds, saturated to the 32-bit range.
  const char kNanoseconds[] = "600000000000000000";
  MessageDb db("sms.db-ios13");
  db.Chat(1, "+15550100").Handle(1, "+15550100").Message(1, 1, "'late'", kNanoseconds, 1);
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::ManifestDb), 0));
  EXPECT_EQ(result, "[" +
                        Conversation("+15550100", "+15550100", "",
                                     {Said("late", Date2001(2147483647), 1)}) +
                        "]");
}

TEST_F(SmsTest, AWhiteSpaceOnlyIdentifierGivesAnEmptyPhone) {
  MessageDb db;
  db.Chat(1, " -\t").Handle(1, " -\t").Message(1, 1, "'x'", "1", 0);
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::Mbdb), 0));
  EXPECT_EQ(result, "[" + Conversation(" -\t", "", "", {Said("x", Date2001(1), 0)}) + "]");
}

TEST_F(SmsTest, HandlesSharingAnIdentifierMakeOneConversation) {
  MessageDb db;
  db.Chat(1, "+15550100")
      .Handle(1, "+15550100", "SMS")
      .Handle(2, "+15550100", "iMessage")
      .Message(1, 1, "'by sms'", "10", 0)
      .Message(2, 2, "'by imessage'", "20", 1, "'us'", "'iMessage'");
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::ManifestDb), 0));
  EXPECT_EQ(result, "[" +
                        Conversation("+15550100", "+15550100", "",
                                     {Said("by sms", Date2001(10), 0), Said("by imessage", Date2001(20), 1, "us",
                                                                            "iMessage")}) +
                        "]");
}

TEST_F(SmsTest, AMessageOfTwoChatsWithOneIdentifierIsListedOnce) {
  MessageDb db;
  db.Chat(1, "+15550100").Chat(2, "+15550100").Handle(1, "+15550100").Message(1, 1, "'once'", "10", 0);
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::ManifestDb), 0));
  EXPECT_EQ(result, "[" + Conversation("+15550100", "+15550100", "", {Said("once", Date2001(10), 0)}) + "]");
}

TEST_F(SmsTest, IdenticalMessagesAreListedOnce) {
  MessageDb db;
  db.Chat(1, "+15550100")
      .Handle(1, "+15550100")
      .Message(1, 1, "'ok'", "10", 0)
      .Message(2, 1, "'ok'", "10", 0)
      .Message(3, 1, "'ok'", "11", 0);
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::ManifestDb), 0));
  EXPECT_EQ(result, "[" +
                        Conversation("+15550100", "+15550100", "",
                                     {Said("ok", Date2001(10), 0), Said("ok", Date2001(11), 0)}) +
                        "]");
}

TEST_F(SmsTest, MessagesWithoutAChatOfTheirHandleAreLeftOut) {
  MessageDb db;
  db.Chat(1, "+15550100")
      .Handle(1, "+15550100")
      .Handle(2, "+15550199")
      .Message(1, 1, "'kept'", "10", 0)
      .Message(2, 2, "'no chat'", "20", 0)
      .Message(3, 0, "'no handle'", "30", 1)
      .Message(4, 9, "'unknown handle'", "40", 1);
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::Mbdb), 0));
  EXPECT_EQ(result, "[" + Conversation("+15550100", "+15550100", "", {Said("kept", Date2001(10), 0)}) + "]");
}

TEST_F(SmsTest, IOS18DatabasesHaveNoCountryColumnAndGiveNoConversations) {
  MessageDb db("sms.db-ios18");
  db.Chat(1, "+15550100").Handle(1, "+15550100");
  const std::string sql =
      db.Sql() + "INSERT INTO message (ROWID, guid, handle_id, text, date) VALUES (1, 'm1', 1, 'hi', 10);\n";
  EXPECT_EQ(DumpAndFree(sms_->FindContent(AnalyseSms(sql, IndexKind::ManifestDb), 0)), "[]");
}

TEST_F(SmsTest, OlderDatabasesAreReadThroughMadridChats) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    MadridDb db;
    db.Chat(9, "+1 555-123-4567")
        .Chat(10, "grace@example.com")
        .Message(1, "'+1 555-123-4567'", "'received'", "100", "12289", "'us'", "'SMS'")
        .Message(2, "'+1 555-123-4567'", "'sent'", "200", "36869")
        .Message(3, "'grace@example.com'", "'zero'", "150", "0", "NULL")
        .Message(4, "'grace@example.com'", "'null'", "NULL", "NULL", "NULL", "NULL")
        .Message(5, "NULL", "'no handle'", "50", "12289")
        .Message(6, "'+15550199'", "'no chat'", "60", "12289");
    Renew();
    const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), kind), 0));
    // Keys are row ids compared as texts: "10" comes before "9".
    EXPECT_EQ(result, "[" +
                          Conversation("10", "grace@example.com", "",
                                       {Said("null", Date2001(0), 1, "", ""),
                                        Said("zero", Date2001(150), 1, "", "iMessage")}) +
                          "," +
                          Conversation("9", "+15551234567", "Ada",
                                       {Said("received", Date2001(100), 0, "us", "SMS"),
                                        Said("sent", Date2001(200), 1, "us", "iMessage")}) +
                          "]");
  }
}

TEST_F(SmsTest, TheFirstMessageOfAMadridChatGivesItsPhone) {
  // Two madrid chats with one identifier: each message joins both.
  MadridDb db;
  db.Chat(1, "+1 555 0100").Chat(2, "+1 555 0100").Message(1, "'+1 555 0100'", "'hi'", "10", "12289");
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::ManifestDb), 0));
  const std::string hi = Said("hi", Date2001(10), 0, "us", "iMessage");
  EXPECT_EQ(result, "[" + Conversation("1", "+15550100", "", {hi}) + "," + Conversation("2", "+15550100", "", {hi}) +
                        "]");
}

TEST_F(SmsTest, TheOlderQueryRunsOnlyWhenTheCurrentOneFails) {
  // The older database with the current tables added, empty: the current
  // query succeeds with no rows, and the madrid rows are not read.
  const std::string currentTables =
      "ALTER TABLE message ADD COLUMN handle_id INTEGER;\nALTER TABLE message ADD COLUMN service TEXT;\n"
      "ALTER TABLE message ADD COLUMN is_from_me INTEGER;\n"
      "CREATE TABLE chat (ROWID INTEGER PRIMARY KEY, chat_identifier TEXT);\n"
      "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT);\n";
  MadridDb both;
  both.Sql(currentTables).Chat(1, "+15550100").Message(1, "'+15550100'", "'hi'", "10", "12289");
  EXPECT_EQ(DumpAndFree(sms_->FindContent(AnalyseSms(both.Sql(), IndexKind::ManifestDb), 0)), "[]");

  MadridDb older;
  older.Chat(1, "+15550100").Message(1, "'+15550100'", "'hi'", "10", "12289");
  EXPECT_EQ(DumpAndFree(sms_->FindContent(AnalyseSms(older.Sql(), IndexKind::ManifestDb), 0)),
            "[" + Conversation("1", "+15550100", "", {Said("hi", Date2001(10), 0, "us", "iMessage")}) + "]");
}

TEST_F(SmsTest, NoMessageDatabaseGivesAnEmptyArray) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Renew();
    BackupBuilder builder(kind);
    builder.AddMissingFile(kHomeDomain, kSmsPath);
    BackupDevice* device = Analyse(builder, kind);
    EXPECT_EQ(DumpAndFree(sms_->FindContent(device, 0)), "[]");
  }
}

TEST_F(SmsTest, AnUnreadableDatabaseOrAnUnknownBackupTypeGivesAnEmptyArray) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile(kHomeDomain, kSmsPath, "not a database");
  BackupDevice* device = Analyse(builder, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(sms_->FindContent(device, 0)), "[]");

  MessageDb db;
  db.Chat(1, "+15550100").Handle(1, "+15550100").Message(1, 1, "'hi'", "10", 0);
  device = AnalyseSms(db.Sql(), IndexKind::ManifestDb);
  device->backupType = 5;
  EXPECT_EQ(DumpAndFree(sms_->FindContent(device, 0)), "[]");
}

TEST_F(SmsTest, EveryRequestReadsTheDatabasesAgain) {
  MessageDb db;
  db.Chat(1, "+15550100").Handle(1, "+15550100").Message(1, 1, "'hi'", "10", 0);
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kSmsPath, db.Sql());
  BackupDevice* device = Analyse(builder, IndexKind::ManifestDb);
  const std::string first = DumpAndFree(sms_->FindContent(device, 0));
  EXPECT_EQ(first, "[" + Conversation("+15550100", "+15550100", "", {Said("hi", Date2001(10), 0)}) + "]");
  EXPECT_EQ(DumpAndFree(sms_->FindContent(device, 1)), first);

  const std::string stored = backup_ + builder.StoredPath(kHomeDomain, kSmsPath);
  std::filesystem::remove(stored);
  MessageDb changed;
  changed.Chat(1, "+15550199").Handle(1, "+15550199").Message(1, 1, "'later'", "20", 1);
  WriteDatabase(stored, changed.Sql());
  EXPECT_EQ(DumpAndFree(sms_->FindContent(device, 0)),
            "[" + Conversation("+15550199", "+15550199", "", {Said("later", Date2001(20), 1)}) + "]");
}

TEST_F(SmsTest, DatabasesAreListedOneAfterTheOther) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Renew();
    MessageDb first;
    first.Chat(1, "b").Handle(1, "b").Message(1, 1, "'in first'", "10", 0);
    MessageDb second;
    second.Chat(1, "a").Handle(1, "a").Message(1, 1, "'in second'", "5", 0);
    BackupBuilder builder(kind);
    builder.AddDatabase(kHomeDomain, kSmsPath, first.Sql()).AddDatabase(kOtherDomain, kSmsPath, second.Sql());
    BackupDevice* device = Analyse(builder, kind);
    EXPECT_EQ(DumpAndFree(sms_->FindContent(device, 0)),
              "[" + Conversation("b", "b", "", {Said("in first", Date2001(10), 0)}) + "," +
                  Conversation("a", "a", "", {Said("in second", Date2001(5), 0)}) + "]");
  }
}

TEST_F(SmsTest, NamesComeFromEveryAddressBook) {
  AddressBook other;
  other.PersonWithNumber(1, "Grace", "'+1 555 0199'");
  MessageDb db;
  db.Chat(1, "+1-555-0199").Handle(1, "+1-555-0199").Message(1, 1, "'hi'", "10", 0);
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddDatabase(kHomeDomain, kSmsPath, db.Sql()).AddDatabase(kOtherDomain, kAddressBookPath, other.Sql());
  BackupDevice* device = Analyse(builder, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(sms_->FindContent(device, 0)),
            "[" + Conversation("+1-555-0199", "+15550199", "Grace", {Said("hi", Date2001(10), 0)}) + "]");
}

TEST_F(SmsTest, LeavesTheBackupUntouched) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Renew();
    MessageDb db;
    db.Chat(1, "+1 555-123-4567").Handle(1, "+1 555-123-4567").Message(1, 1, "'hi'", "10", 0);
    BackupDevice* device = AnalyseSms(db.Sql(), kind);
    const std::string before = SnapshotTree(backup_);
    EXPECT_NE(DumpAndFree(sms_->FindContent(device, 0)), "[]");
    EXPECT_EQ(SnapshotTree(backup_), before);
  }
}

TEST_F(SmsTest, IsFromMeIsPassedOnAsItIsAndSignExtended) {
  MessageDb db;
  db.Chat(1, "+15550100")
      .Handle(1, "+15550100")
      .Message(1, 1, "'two'", "10", 2)
      .Message(2, 1, "'minus'", "20", -1);
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::ManifestDb), 0));
  std::string minus = Said("minus", Date2001(20), 0);
  minus.replace(minus.find("0u"), 2, "18446744073709551615u");
  EXPECT_EQ(result, "[" + Conversation("+15550100", "+15550100", "", {Said("two", Date2001(10), 2), minus}) + "]");
}

TEST_F(SmsTest, EveryWhiteSpaceCharacterLeavesThePhone) {
  const std::string identifier = "+1\t555\n123\v45\f6\r7 -";
  MessageDb db;
  db.Chat(1, identifier).Handle(1, identifier).Message(1, 1, "'hi'", "10", 0);
  const std::string result = DumpAndFree(sms_->FindContent(AnalyseSms(db.Sql(), IndexKind::ManifestDb), 0));
  EXPECT_EQ(result, "[" + Conversation(identifier, "+15551234567", "Ada", {Said("hi", Date2001(10), 0)}) + "]");
}

}  // namespace
}  // namespace yhtest
