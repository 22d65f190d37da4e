#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kinds/AddressBookSql.h"
#include "kinds/WhatsAppSql.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};
const char kCallHistory[] = "CallHistory.sqlite";

struct Party {
  std::string address, name;
};

struct WhatsAppCall {
  std::string name, address, date, type, duration;
  bool answered;
  std::string service;
  std::vector<Party> participants;
  bool group;
};

std::string Bool(bool value) { return value ? "true" : "false"; }

std::string Expected(const std::vector<WhatsAppCall>& calls) {
  std::string text = "[";
  for (const WhatsAppCall& call : calls) {
    if (text.size() > 1) text += ",";
    std::string parties;
    for (const Party& party : call.participants) {
      parties += std::string(parties.empty() ? "" : ",") + "{\"address\":\"" + party.address + "\",\"name\":\"" +
                 party.name + "\"}";
    }
    text += "{\"name\":\"" + call.name + "\",\"address\":\"" + call.address + "\",\"date\":\"" + call.date +
            "\",\"type\":\"" + call.type + "\",\"duration\":\"" + call.duration +
            "\",\"country_code\":\"\",\"network_code\":\"\",\"location\":\"\",\"answered\":" + Bool(call.answered) +
            ",\"service\":\"" + call.service + "\",\"participants\":[" + parties + "],\"group\":" + Bool(call.group) +
            "}";
  }
  return text + "]";
}

// 2023-12-01 12:00:00 UTC (07:00 in New York, winter time) in seconds since
// 2001, and minutes after it.
std::string At(int minute) { return std::to_string(723124800 + 60 * minute); }

// Two calls with Ada grouped under one entry, an unanswered video call to
// Charles, a missed group call and an entry without calls of its own.
std::string CallHistory() {
  return Schema("CallHistory.sqlite-whatsapp-ios15") +
         "INSERT INTO ZWAAGGREGATECALLEVENT (Z_PK, ZINCOMING, ZMISSED, ZVIDEO, ZFIRSTDATE) VALUES "
         "(1, 1, 0, 0, " +
         At(0) + "), (2, 0, 0, 1, " + At(10) + "), (3, 1, 1, 0, " + At(20) +
         "), "
         "(4, 1, 1, 1, " +
         At(40) +
         ");\n"
         "INSERT INTO ZWACDCALLEVENT (Z_PK, Z1CALLEVENTS, ZDATE, ZDURATION, ZOUTCOME, ZGROUPJIDSTRING) VALUES "
         "(1, 1, " +
         At(0) + ", 95.5, 0, NULL), (2, 2, " + At(10) +
         ", 30, 1, NULL), "
         "(3, 3, " +
         At(20) + ", 0, 1, '120363000000000001@g.us'), (4, 1, " + At(30) +
         ", 60, 0, NULL);\n"
         "INSERT INTO ZWACDCALLEVENTPARTICIPANT (Z_PK, Z1PARTICIPANTS, ZJIDSTRING) VALUES "
         "(1, 1, '447700900123@s.whatsapp.net'), (2, 2, '447700900777@s.whatsapp.net'), "
         "(3, 3, '447700900123@s.whatsapp.net'), (4, 3, '16175550199@s.whatsapp.net'), "
         "(5, 4, '15550003333@s.whatsapp.net');\n";
}

std::string WriteCallsBackup(const TempDir& root, IndexKind kind) {
  return BackupBuilder(kind)
      .AddDatabase(kWhatsAppDomain, kCallHistory, CallHistory())
      .AddDatabase(kWhatsAppDomain, "ContactsV2.sqlite",
                   Schema("ContactsV2.sqlite-whatsapp-ios15") +
                       "INSERT INTO ZWAADDRESSBOOKCONTACT (Z_PK, ZWHATSAPPID, ZFULLNAME) VALUES "
                       "(1, '447700900777@s.whatsapp.net', 'Charles Babbage'), "
                       "(2, '447700900123@s.whatsapp.net', 'Not Ada');\n")
      .AddDatabase("HomeDomain", kAddressBookPath,
                   AddressBook()
                       .PersonWithNumber(1, "Ada", "'+44 7700 900123'")
                       .PersonWithNumber(2, "Mary", "'+1 (617) 555-0199'")
                       .Sql())
      .Write(root.Path() + "b");
}

TEST(CurrentWhatsAppCalls, NewestFirstWithTrueDatesNamesAndGroupCallsWithTheirParticipants) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = WriteCallsBackup(root, kind);
    for (const auto& [zone, hour] : {std::pair<const char*, const char*>{"UTC", "12"}, {"America/New_York", "07"}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      const std::string day = std::string("2023-12-01 ") + hour + ":";
      const Party ada{"447700900123", "Ada"};
      EXPECT_EQ(
          served.Answer(ContentWhatsAppCalls),
          Expected({
              {"",
               "15550003333",
               day + "40:00",
               "Incoming",
               "00:00:00",
               false,
               "WhatsApp Video",
               {{"15550003333", ""}},
               false},
              {"Ada", "447700900123", day + "30:00", "Incoming", "00:01:00", true, "WhatsApp Audio", {ada}, false},
              {"Ada, Mary",
               "447700900123, 16175550199",
               day + "20:00",
               "Incoming",
               "00:00:00",
               false,
               "WhatsApp Audio",
               {ada, {"16175550199", "Mary"}},
               true},
              {"Charles Babbage",
               "447700900777",
               day + "10:00",
               "Outgoing",
               "00:00:30",
               false,
               "WhatsApp Video",
               {{"447700900777", "Charles Babbage"}},
               false},
              {"Ada", "447700900123", day + "00:00", "Incoming", "00:01:35", true, "WhatsApp Audio", {ada}, false},
          }))
          << zone;
    }
  }
}

// A database without calls answers an empty array, a backup without one NULL.
TEST(CurrentWhatsAppCalls, TheDescribedServiceAnswersNullAndABackupWithoutCallsAnEmptyArray) {
  TempDir root;
  const std::string backup = WriteCallsBackup(root, IndexKind::ManifestDb);
  EXPECT_EQ(ServedBackup(backup, Service::Described).Answer(ContentWhatsAppCalls), "null");
  TempDir other;
  const std::string empty = BackupBuilder(IndexKind::ManifestDb)
                                .AddDatabase(kWhatsAppDomain, kCallHistory, Schema("CallHistory.sqlite-whatsapp-ios15"))
                                .Write(other.Path() + "b");
  EXPECT_EQ(ServedBackup(empty, Service::Current).Answer(ContentWhatsAppCalls), "[]");
}

TEST(CurrentWhatsAppCalls, RowsKeptOnlyInTheWalAreRead) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup =
        BackupBuilder(kind)
            .AddDatabaseWithWal(
                kWhatsAppDomain, kCallHistory, Schema("CallHistory.sqlite-whatsapp-ios15"),
                "INSERT INTO ZWACDCALLEVENT (Z_PK, ZDATE, ZDURATION, ZOUTCOME) VALUES (1, " + At(0) + ", 5, 0);\n")
            .Write(root.Path() + "b");
    ScopedTimeZone utc("UTC");
    EXPECT_EQ(ServedBackup(backup, Service::Current).Answer(ContentWhatsAppCalls),
              Expected({{"", "", "2023-12-01 12:00:00", "Unknown", "00:00:05", true, "WhatsApp Audio", {}, false}}));
  }
}

// Only entries, or only calls without their entries' table: what is there
// is listed.
TEST(CurrentWhatsAppCalls, ADatabaseWithoutSomeTablesOrColumnsListsWhatItHas) {
  ScopedTimeZone utc("UTC");
  const std::string entries =
      "CREATE TABLE ZWAAGGREGATECALLEVENT (Z_PK INTEGER PRIMARY KEY, ZINCOMING INTEGER, ZFIRSTDATE TIMESTAMP);\n"
      "INSERT INTO ZWAAGGREGATECALLEVENT VALUES (1, 0, " +
      At(0) + ");\n";
  const std::string calls =
      "CREATE TABLE ZWACDCALLEVENT (Z_PK INTEGER PRIMARY KEY, ZDATE TIMESTAMP);\n"
      "INSERT INTO ZWACDCALLEVENT VALUES (1, " +
      At(1) + ");\n";
  const std::pair<std::string, std::string> cases[] = {
      {entries,
       Expected({{"", "", "2023-12-01 12:00:00", "Outgoing", "00:00:00", false, "WhatsApp Audio", {}, false}})},
      {calls, Expected({{"", "", "2023-12-01 12:01:00", "Unknown", "00:00:00", false, "WhatsApp Audio", {}, false}})},
  };
  for (const auto& [sql, expected] : cases) {
    TempDir root;
    const std::string backup =
        BackupBuilder(IndexKind::Mbdb).AddDatabase(kWhatsAppDomain, kCallHistory, sql).Write(root.Path() + "b");
    EXPECT_EQ(ServedBackup(backup, Service::Current).Answer(ContentWhatsAppCalls), expected);
  }
}

TEST(CurrentWhatsAppCalls, DamagedDatabasesAndValuesAnswerWhatCanBeRead) {
  TempDir root;
  const std::string damaged = BackupBuilder(IndexKind::ManifestDb)
                                  .AddFile(kWhatsAppDomain, kCallHistory, "not a database")
                                  .Write(root.Path() + "a");
  EXPECT_EQ(ServedBackup(damaged, Service::Current).Answer(ContentWhatsAppCalls), "[]");
  const std::string odd =
      BackupBuilder(IndexKind::ManifestDb)
          .AddDatabase(kWhatsAppDomain, kCallHistory,
                       Schema("CallHistory.sqlite-whatsapp-ios15") +
                           "INSERT INTO ZWAAGGREGATECALLEVENT (Z_PK, ZINCOMING, ZVIDEO) VALUES (1, 'yes', X'01');\n"
                           "INSERT INTO ZWACDCALLEVENT (Z_PK, Z1CALLEVENTS, ZDATE, ZDURATION, ZOUTCOME) VALUES "
                           "(1, 'one', 'soon', -5, 'x'), (2, 1, 1e300, 1e300, NULL);\n"
                           "INSERT INTO ZWACDCALLEVENTPARTICIPANT (Z_PK, Z1PARTICIPANTS, ZJIDSTRING) VALUES "
                           "(1, 1, X'00'), (2, NULL, 'x@s.whatsapp.net');\n")
          .Write(root.Path() + "b");
  const std::string answer = ServedBackup(odd, Service::Current).Answer(ContentWhatsAppCalls);
  EXPECT_NE(answer.find("\"duration\":\"00:00:00\""), std::string::npos) << answer;
}

}  // namespace
}  // namespace yhtest
