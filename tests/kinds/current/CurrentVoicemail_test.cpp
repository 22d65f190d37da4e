#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "kinds/AddressBookSql.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};
const char* const kVoicemailDb = "Library/Voicemail/voicemail.db";

struct Message {
  std::string name, address, date, duration;
  bool heard, deleted;
  std::string path;
  unsigned size;
  bool present;
  std::string fileName;
};

std::string Bool(bool value) { return value ? "true" : "false"; }

std::string Expected(const std::vector<Message>& messages) {
  std::string text = "[";
  for (const Message& message : messages) {
    if (text.size() > 1) text += ",";
    text += "{\"name\":\"" + message.name + "\",\"address\":\"" + message.address + "\",\"date\":\"" + message.date +
            "\",\"duration\":\"" + message.duration + "\",\"heard\":" + Bool(message.heard) +
            ",\"deleted\":" + Bool(message.deleted) + ",\"path\":\"" + message.path +
            "\",\"size\":" + std::to_string(message.size) + "u,\"present\":" + Bool(message.present) +
            ",\"file_name\":\"" + message.fileName + "\"}";
  }
  return text + "]";
}

// Heard (flags 3), deleted by its date in the bin (flags 2), deleted by its
// flags (75), and a row with nothing but its ROWID.
std::string Voicemails() {
  return Schema("voicemail.db-ios9") +
         "INSERT INTO voicemail (ROWID, remote_uid, date, sender, callback_num, duration, expiration, trashed_date, "
         "flags) VALUES "
         "(1, 11, 1561982400, '+16175550199', '+16175550199', 65, 0, 0, 3), "
         "(2, 12, 1575208800, '5550100', '5550100', 30, 0, 600000000, 2), "
         "(3, 13, 2214216000, '+15550000000', NULL, 0, 0, 0, 75), "
         "(4, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL);\n";
}

std::string WriteVoicemailBackup(const TempDir& root, BackupBuilder& builder) {
  builder.AddDatabase("HomeDomain", kVoicemailDb, Voicemails())
      .AddFile("HomeDomain", "Library/Voicemail/1.amr", "#!AMR\n1")
      .AddFile("MediaDomain", "Library/Voicemail/2.amr", "elsewhere")
      .AddFile("HomeDomain", "Library/Voicemail/3.amr", "#!AMR\n")
      .AddDatabase("HomeDomain", kAddressBookPath,
                   AddressBook().PersonWithNumber(1, "Ada", "'+1 (617) 555-0199'").Sql());
  return builder.Write(root.Path() + "b");
}

TEST(CurrentVoicemail, NewestFirstWithTrueDatesNamesAndFilesLocatedExactly) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    BackupBuilder builder(kind);
    const std::string backup = WriteVoicemailBackup(root, builder);
    const std::string first = backup + builder.StoredPath("HomeDomain", "Library/Voicemail/1.amr");
    const std::string third = backup + builder.StoredPath("HomeDomain", "Library/Voicemail/3.amr");
    for (const auto& [zone, hours] :
         {std::pair<const char*, std::vector<std::string>>{"UTC", {"12", "14", "12"}},
          {"America/New_York", {"07", "09", "08"}}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      EXPECT_EQ(served.Answer(ContentVoicemail),
                Expected({
                    {"", "+15550000000", "2040-03-01 " + hours[0] + ":00:00", "00:00:00", true, true, third, 6, true,
                     "3.amr"},
                    {"", "5550100", "2019-12-01 " + hours[1] + ":00:00", "00:00:30", false, true, "", 0, false,
                     "2.amr"},
                    {"Ada", "+16175550199", "2019-07-01 " + hours[2] + ":00:00", "00:01:05", true, false, first, 7,
                     true, "1.amr"},
                    {"", "", "", "00:00:00", false, false, "", 0, false, "4.amr"},
                }))
          << zone;
    }
  }
}

TEST(CurrentVoicemail, TheDescribedServiceAnswersNullForVoicemail) {
  TempDir root;
  BackupBuilder builder(IndexKind::ManifestDb);
  const std::string backup = WriteVoicemailBackup(root, builder);
  ServedBackup described(backup, Service::Described);
  ASSERT_TRUE(described.Analysed());
  EXPECT_EQ(described.Answer(ContentVoicemail), "null");
  EXPECT_EQ(described.Answer(ContentVoicemail + 1), "null");
  ServedBackup current(backup, Service::Current);
  EXPECT_EQ(current.Answer(ContentVoicemail + 1), "null");
}

TEST(CurrentVoicemail, RowsKeptOnlyInTheWalAreRead) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup =
        BackupBuilder(kind)
            .AddDatabaseWithWal("HomeDomain", kVoicemailDb, Schema("voicemail.db-ios9"),
                                "INSERT INTO voicemail (ROWID, date, sender, duration, trashed_date, flags) VALUES "
                                "(7, 1561982400, '555', 5, 0, 0);\n")
            .Write(root.Path() + "b");
    ScopedTimeZone utc("UTC");
    ServedBackup served(backup, Service::Current);
    EXPECT_EQ(served.Answer(ContentVoicemail),
              Expected({{"", "555", "2019-07-01 12:00:00", "00:00:05", false, false, "", 0, false, "7.amr"}}));
  }
}

TEST(CurrentVoicemail, ATableWithoutItsLaterColumnsStillLists) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::Mbdb)
                                 .AddDatabase("HomeDomain", kVoicemailDb,
                                              "CREATE TABLE voicemail (ROWID INTEGER PRIMARY KEY, sender TEXT);\n"
                                              "INSERT INTO voicemail VALUES (1, '555');\n")
                                 .Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentVoicemail),
            Expected({{"", "555", "", "00:00:00", false, false, "", 0, false, "1.amr"}}));
}

TEST(CurrentVoicemail, DamagedOrEmptyDatabasesAnswerAnEmptyArray) {
  for (const std::string& sql : {std::string("CREATE TABLE other (a);\n"), Schema("voicemail.db-ios9")}) {
    TempDir root;
    ServedBackup served(
        BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kVoicemailDb, sql).Write(root.Path() + "b"),
        Service::Current);
    EXPECT_EQ(served.Answer(ContentVoicemail), "[]");
  }
  TempDir root;
  ServedBackup damaged(BackupBuilder(IndexKind::ManifestDb)
                           .AddFile("HomeDomain", kVoicemailDb, "not a database")
                           .Write(root.Path() + "b"),
                       Service::Current);
  EXPECT_EQ(damaged.Answer(ContentVoicemail), "[]");
}

}  // namespace
}  // namespace yhtest
