#include <gtest/gtest.h>

#include <string>

#include "kinds/AddressBookSql.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};

struct Call {
  std::string name, address, date, type, duration, country, network;
  bool answered;
  std::string service;
  std::string deletedFrom = "";  // of a deleted call
};

std::string Expected(const std::vector<Call>& calls) {
  std::string text = "[";
  for (const Call& call : calls) {
    if (text.size() > 1) text += ",";
    text += "{\"name\":\"" + call.name + "\",\"address\":\"" + call.address + "\",\"date\":\"" + call.date +
            "\",\"type\":\"" + call.type + "\",\"duration\":\"" + call.duration + "\",\"country_code\":\"" +
            call.country + "\",\"network_code\":\"" + call.network + "\",\"location\":\"\",\"answered\":" +
            (call.answered ? "true" : "false") + ",\"service\":\"" + call.service + "\"" +
            (call.deletedFrom.empty() ? "" : ",\"deleted_from\":\"" + call.deletedFrom + "\",\"deleted_date\":\"\"") +
            "}";
  }
  return text + "]";
}

// Both call logs (the store with a -wal when `wal` holds rows) and an
// address book that knows Ada.
std::string CallBackup(const TempDir& root, IndexKind kind, const std::string& callDb, const std::string& store,
                       const std::string& wal = "") {
  BackupBuilder builder(kind);
  builder.AddDatabase("WirelessDomain", "Library/CallHistory/call_history.db", callDb);
  if (wal.empty()) {
    builder.AddDatabase("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", store);
  } else {
    builder.AddDatabaseWithWal("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", store, wal);
  }
  return builder
      .AddDatabase("HomeDomain", kAddressBookPath, AddressBook().PersonWithNumber(1, "Ada", "'+1 (617) 555-0199'").Sql())
      .Write(root.Path() + "backup");
}

// An iOS 5 call database (no network_code column), an iOS 18 call store
// (one address as a BLOB, FaceTime audio and video) and an address book.
std::string WriteCallBackup(const TempDir& root, IndexKind kind) {
  const std::string callDb = Schema("call_history.db-ios5") +
                             "INSERT INTO call (name, address, date, flags, duration, country_code) VALUES "
                             "('', '+1 (617) 555-0199', 1561982400, 4, 65, 'us'), "
                             "('Bob', '5550100', 1561982500, 5, 0, 'us');\n";
  const std::string store =
      Schema("CallHistory.storedata-ios18") +
      "INSERT INTO ZCALLRECORD (Z_PK, ZNAME, ZADDRESS, ZDATE, ZORIGINATED, ZDURATION, ZISO_COUNTRY_CODE, "
      "ZANSWERED, ZCALLTYPE) VALUES "
      "(1, NULL, X'2B3136313735353530313939', 583675350.5, 0, 0, 'us', 0, 16), "
      "(2, '', 'someone@example.org', 583675400, 1, 59.9, NULL, 1, 8);\n";
  return CallBackup(root, kind, callDb, store);
}

TEST(CurrentCalls, EveryGenerationNewestFirstWithTrueDatesAndNames) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = WriteCallBackup(root, kind);
    for (const auto& [zone, hour] : {std::pair<const char*, const char*>{"UTC", "12"}, {"America/New_York", "08"}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      const std::string day = std::string("2019-07-01 ") + hour;
      EXPECT_EQ(served.Answer(ContentCallHistory),
                Expected({
                    {"", "someone@example.org", day + ":03:20", "Outgoing", "00:00:59", "", "", true, "FaceTime Video"},
                    {"Ada", "+16175550199", day + ":02:30", "Incoming", "00:00:00", "us", "", false, "FaceTime Audio"},
                    {"Bob", "5550100", day + ":01:40", "Outgoing", "00:00:00", "us", "", false, "Phone"},
                    {"Ada", "+1 (617) 555-0199", day + ":00:00", "Incoming", "00:01:05", "us", "", true, "Phone"},
                }))
          << zone;
    }
  }
}

// iOS 17 stores ZANSWERED 0 for every outgoing call, also for those that
// lasted: an outgoing call counts as answered unless it lasted nothing and
// no column says it was answered. An incoming call is answered when
// ZANSWERED says so.
TEST(CurrentCalls, AnOutgoingCallIsAnsweredUnlessItLastedNothingAndNothingSaysItWas) {
  const std::string store =
      Schema("CallHistory.storedata-ios17") +
      "INSERT INTO ZCALLRECORD (Z_PK, ZADDRESS, ZDATE, ZORIGINATED, ZDURATION, ZANSWERED, ZCALLTYPE) VALUES "
      "(1, '5550101', 583675201, 1, 61.2, 0, 1), (2, '5550102', 583675202, 1, 0, 0, 1), "
      "(3, '5550103', 583675203, 1, 0, 1, 1), (4, '5550104', 583675204, 0, 0, 0, 1), "
      "(5, '5550105', 583675205, 0, 30, 1, 1), (6, '5550106', 583675206, 1, NULL, NULL, 1);\n";
  TempDir root;
  ScopedTimeZone utc("UTC");
  ServedBackup served(BackupBuilder(IndexKind::ManifestDb)
                          .AddDatabase("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", store)
                          .Write(root.Path() + "b"),
                      Service::Current);
  EXPECT_EQ(served.Answer(ContentCallHistory),
            Expected({
                {"", "5550106", "2019-07-01 12:00:06", "Outgoing", "00:00:00", "", "", false, "Phone"},
                {"", "5550105", "2019-07-01 12:00:05", "Incoming", "00:00:30", "", "", true, "Phone"},
                {"", "5550104", "2019-07-01 12:00:04", "Incoming", "00:00:00", "", "", false, "Phone"},
                {"", "5550103", "2019-07-01 12:00:03", "Outgoing", "00:00:00", "", "", true, "Phone"},
                {"", "5550102", "2019-07-01 12:00:02", "Outgoing", "00:00:00", "", "", false, "Phone"},
                {"", "5550101", "2019-07-01 12:00:01", "Outgoing", "00:01:01", "", "", true, "Phone"},
            }));
}

TEST(CurrentCalls, TheDescribedServiceStillSkipsTheOldDatabaseWithoutNetworkCodes) {
  TempDir root;
  const std::string backup = WriteCallBackup(root, IndexKind::Mbdb);
  ScopedTimeZone utc("UTC");
  ServedBackup described(backup, Service::Described);
  const std::string answer = described.Answer(ContentCallHistory);
  EXPECT_EQ(answer.find("5550100"), std::string::npos);
}

// NULL without a call database; an empty array for one without calls.
TEST(CurrentCalls, ABackupWithoutCallsAnswersNullAnEmptyLogAnEmptyArray) {
  TempDir root;
  ServedBackup served(BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "b"), Service::Current);
  EXPECT_EQ(served.Answer(ContentCallHistory), "null");
  TempDir other;
  ServedBackup empty(BackupBuilder(IndexKind::ManifestDb)
                         .AddDatabase("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata",
                                      Schema("CallHistory.storedata-ios18"))
                         .Write(other.Path() + "b"),
                     Service::Current);
  EXPECT_EQ(empty.Answer(ContentCallHistory), "[]");
}

// A card with only an organisation names its numbers by it, as the phone does.
TEST(CurrentCalls, AnOrganisationsCardNamesItsNumber) {
  TempDir root;
  const std::string store = Schema("CallHistory.storedata-ios18") +
                            "INSERT INTO ZCALLRECORD (Z_PK, ZADDRESS, ZDATE, ZORIGINATED, ZDURATION, ZANSWERED, "
                            "ZCALLTYPE) VALUES (1, '+18005550100', 583675200, 0, 30, 1, 1);\n";
  const std::string book =
      AddressBook().Person(1, "Organization", "'Analytical Bank'").Value(1, 1, 0, "'1-800-555-0100'").Sql();
  ScopedTimeZone utc("UTC");
  ServedBackup served(BackupBuilder(IndexKind::ManifestDb)
                          .AddDatabase("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", store)
                          .AddDatabase("HomeDomain", kAddressBookPath, book)
                          .Write(root.Path() + "b"),
                      Service::Current);
  EXPECT_EQ(served.Answer(ContentCallHistory),
            Expected({{"Analytical Bank", "+18005550100", "2019-07-01 12:00:00", "Incoming", "00:00:30", "", "",
                       true, "Phone"}}));
}

TEST(CurrentCalls, AStoreWithoutItsNewerColumnsStillLists) {
  TempDir root;
  const std::string store =
      "CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY, ZADDRESS VARCHAR, ZDATE TIMESTAMP, ZORIGINATED INTEGER);\n"
      "INSERT INTO ZCALLRECORD VALUES (1, '555', NULL, 1);\n";
  ScopedTimeZone utc("UTC");
  ServedBackup served(BackupBuilder(IndexKind::ManifestDb)
                          .AddDatabase("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", store)
                          .Write(root.Path() + "b"),
                      Service::Current);
  EXPECT_EQ(served.Answer(ContentCallHistory),
            Expected({{"", "555", "", "Outgoing", "00:00:00", "", "", false, "Phone"}}));
}

// An iOS 7 call database with a call deleted between two kept ones, and an
// iOS 18 call store whose deleted call lives in its -wal.
std::string WriteDeletedCallBackup(const TempDir& root, IndexKind kind) {
  const std::string callDb = "PRAGMA secure_delete=OFF;\n" + Schema("call_history.db-ios5") +
                             "INSERT INTO call (ROWID, name, address, date, flags, duration, country_code) VALUES "
                             "(1, '', '5550100', 1561982400, 4, 65, 'us'), "
                             "(2, '', '+1 (617) 555-0199', 1561982460, 5, 30, 'us'), "
                             "(3, '', '5550101', 1561982520, 4, 0, 'us');\n"
                             "DELETE FROM call WHERE ROWID = 2;\n";
  const std::string store = "PRAGMA secure_delete=OFF;\n" + Schema("CallHistory.storedata-ios18") +
                            "INSERT INTO ZCALLRECORD (Z_PK, ZADDRESS, ZDATE, ZORIGINATED, ZDURATION, ZANSWERED, "
                            "ZCALLTYPE) VALUES (1, 'kept@example.org', 583675200, 1, 10, 1, 1);\n";
  const std::string wal = "INSERT INTO ZCALLRECORD (Z_PK, ZADDRESS, ZDATE, ZORIGINATED, ZDURATION, ZANSWERED, "
                          "ZCALLTYPE) VALUES (2, 'gone@example.org', 583675500, 0, 0, 0, 8);\n"
                          "DELETE FROM ZCALLRECORD WHERE Z_PK = 2;\n";
  return CallBackup(root, kind, callDb, store, wal);
}

TEST(CurrentCalls, DeletedCallsOfEveryLogNewestFirstNamedFromTheAddressBook) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = WriteDeletedCallBackup(root, kind);
    const std::string before = SnapshotTree(backup);
    for (const auto& [zone, hour] : {std::pair<const char*, const char*>{"UTC", "12"}, {"America/New_York", "08"}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      const std::string day = std::string("2019-07-01 ") + hour;
      EXPECT_EQ(served.DeletedAnswer(ContentCallHistory),
                Expected({
                    {"", "gone@example.org", day + ":05:00", "Incoming", "00:00:00", "", "", false, "FaceTime Video",
                     "wal"},
                    {"Ada", "+1 (617) 555-0199", day + ":01:00", "Outgoing", "00:00:30", "us", "", true, "Phone",
                     "freeblock"},
                }))
          << zone;
      const std::string live = served.Answer(ContentCallHistory);
      EXPECT_EQ(live.find("gone@example.org"), std::string::npos) << live;
      EXPECT_NE(live.find("kept@example.org"), std::string::npos) << live;
    }
    EXPECT_EQ(SnapshotTree(backup), before);
  }
}

}  // namespace
}  // namespace yhtest
