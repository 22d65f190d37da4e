#include "kinds/CallHistory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/DateHelpers.h"
#include "kinds/AddressBookSql.h"
#include "kinds/Contact.h"
#include "kinds/KindFixture.h"
#include "support/BackupBuilder.h"
#include "support/PlistDump.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const char kCallDbPath[] = "Library/CallHistory/call_history.db";
const char kCallStorePath[] = "Library/CallHistoryDB/CallHistory.storedata";
const char kHomeDomain[] = "HomeDomain";
const char kOtherDomain[] = "WirelessDomain";

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};

std::string Name(IndexKind kind) { return kind == IndexKind::Mbdb ? "Manifest.mbdb" : "Manifest.db"; }

std::string Take(char* text) {
  std::string copy(text);
  std::free(text);
  return copy;
}
std::string Date1970(int32_t seconds) { return Take(Convert1900GMTDate(seconds)); }
std::string Date2001(int32_t seconds) { return Take(Convert2001GMTtoDate(seconds)); }

// The old call database of one device generation; each row's values are SQL
// literals for name, address, date, flags, duration, country and network code.
std::string CallDb(const std::string& schema, const std::vector<std::string>& rows) {
  const bool networkCode = schema != "call_history.db-ios5";
  std::string sql = Schema(schema);
  for (const std::string& row : rows) {
    sql += std::string("INSERT INTO call (name, address, date, flags, duration, country_code") +
           (networkCode ? ", network_code" : "") + ") VALUES (" + row + ");\n";
  }
  return sql;
}

// The call store of one device generation; each row's values are SQL
// literals for name, address, date, originated, duration, country code,
// service provider and location.
std::string CallStore(const std::vector<std::string>& rows,
                      const std::string& schema = "CallHistory.storedata-ios17") {
  std::string sql = Schema(schema);
  int id = 0;
  for (const std::string& row : rows) {
    sql += "INSERT INTO ZCALLRECORD (Z_PK, ZNAME, ZADDRESS, ZDATE, ZORIGINATED, ZDURATION, ZISO_COUNTRY_CODE, "
           "ZSERVICE_PROVIDER, ZLOCATION) VALUES (" +
           std::to_string(++id) + ", " + row + ");\n";
  }
  return sql;
}

struct Expected {
  std::string name;
  std::string address;
  std::string date;
  std::string type;
  std::string duration;
  std::string countryCode;
  std::string networkCode;
  std::string location;
};

std::string Calls(const std::vector<Expected>& calls) {
  std::string dump = "[";
  for (size_t i = 0; i < calls.size(); ++i) {
    const Expected& c = calls[i];
    dump += std::string(i ? "," : "") + "{\"name\":\"" + c.name + "\",\"address\":\"" + c.address + "\",\"date\":\"" +
            c.date + "\",\"type\":\"" + c.type + "\",\"duration\":\"" + c.duration + "\",\"country_code\":\"" +
            c.countryCode + "\",\"network_code\":\"" + c.networkCode + "\",\"location\":\"" + c.location + "\"}";
  }
  return dump + "]";
}

class CallHistoryTest : public ::testing::Test {
 protected:
  CallHistoryTest() { Renew(); }

  // Writes the backup with an address book and reads its index.
  BackupDevice* Analyse(BackupBuilder& builder, IndexKind kind) {
    AddressBook book;
    book.PersonWithNumber(1, "Ada", "'+1 (555) 123-4567'").PersonWithNumber(2, "Grace", "'+1 555 0199'");
    builder.AddDatabase(kHomeDomain, kAddressBookPath, book.Sql());
    backup_ = builder.Write(dir_.Path() + "backup" + std::to_string(++backups_));
    device_ = std::make_unique<AnalysedDevice>(backup_, kind);
    EXPECT_TRUE(device_->IndexRead());
    return device_->Get();
  }
  // A fresh pair of extractors, for a test that makes several backups.
  void Renew() {
    contact_ = std::make_unique<Contact>();
    calls_ = std::make_unique<CallHistory>();
    calls_->SetContact(contact_.get());
  }

  TempDir dir_;
  int backups_ = 0;
  std::string backup_;
  std::unique_ptr<AnalysedDevice> device_;
  std::unique_ptr<Contact> contact_;
  std::unique_ptr<CallHistory> calls_;
};

TEST_F(CallHistoryTest, OldDatabaseCallsAreListedInTableOrder) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddDatabase(kHomeDomain, kCallDbPath,
                      CallDb("call_history.db-ios7", {"'Bob', '+15550100', 1400000000, 4, 3661, 'us', '310'",
                                                      "'Carol', '+15550101', 1300000000, 5, 59, 'gb', '234'",
                                                      "'Dan', '+15550102', 1350000000, 0, 0, 'fr', NULL",
                                                      "'Eve', '+15550103', 1360000000, 20, 360000, NULL, '208'"}));
  BackupDevice* device = Analyse(builder, IndexKind::Mbdb);
  // Only flags 4 is incoming: every other value, 0 included, counts as outgoing.
  EXPECT_EQ(DumpAndFree(calls_->FindContent(device, 0)),
            Calls({{"Bob", "+15550100", Date1970(1400000000), "Incoming", "01:01:01", "us", "310", ""},
                   {"Carol", "+15550101", Date1970(1300000000), "Outgoing", "00:00:59", "gb", "234", ""},
                   {"Dan", "+15550102", Date1970(1350000000), "Outgoing", "00:00:00", "fr", "", ""},
                   {"Eve", "+15550103", Date1970(1360000000), "Outgoing", "100:00:00", "", "208", ""}}));
}

TEST_F(CallHistoryTest, OldDatabaseNullColumnsBecomeEmptyOrTheStartOf1970) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddDatabase(kHomeDomain, kCallDbPath,
                      CallDb("call_history.db-ios7", {"NULL, NULL, NULL, NULL, NULL, NULL, NULL"}));
  BackupDevice* device = Analyse(builder, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(calls_->FindContent(device, 0)),
            Calls({{"", "", Date1970(0), "Outgoing", "00:00:00", "", "", ""}}));
}

TEST_F(CallHistoryTest, AnIOS5CallDatabaseHasNoNetworkCodeAndGivesNoCalls) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddDatabase(kHomeDomain, kCallDbPath,
                      CallDb("call_history.db-ios5", {"'Bob', '+15550100', 1400000000, 4, 30, 'us'"}));
  EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, IndexKind::Mbdb), 0)), "null");
}

TEST_F(CallHistoryTest, TheCallStoreIsListedNewestFirst) {
  for (const char* schema : {"CallHistory.storedata-ios17", "CallHistory.storedata-ios18"}) {
    SCOPED_TRACE(schema);
    Renew();
    BackupBuilder builder(IndexKind::ManifestDb);
    builder.AddDatabase(kHomeDomain, kCallStorePath,
                        CallStore({"'Bob', '+15550100', 600000000.7, 0, 59.9, 'us', 'Carrier', 'Ohio'",
                                   "'Carol', '+15550101', 700000000, 1, 3661, 'gb', NULL, NULL",
                                   "'Dan', '+15550102', 650000000, 2, 0, NULL, 'Carrier', 'Texas'"},
                                  schema));
    BackupDevice* device = Analyse(builder, IndexKind::ManifestDb);
    EXPECT_EQ(DumpAndFree(calls_->FindContent(device, 0)),
              Calls({{"Carol", "+15550101", Date2001(700000000), "Outgoing", "01:01:01", "gb", "", ""},
                     {"Dan", "+15550102", Date2001(650000000), "Unknown", "00:00:00", "", "Carrier", "Texas"},
                     {"Bob", "+15550100", Date2001(600000000), "Incoming", "00:00:59", "us", "Carrier", "Ohio"}}));
  }
}

TEST_F(CallHistoryTest, TheCallStoreOfAManifestMbdbBackupHasNoProviderOrLocation) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddDatabase(kHomeDomain, kCallStorePath,
                      CallStore({"'Bob', '+15550100', 600000000, 1, 12, 'us', 'Carrier', 'Ohio'"}));
  EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, IndexKind::Mbdb), 0)),
            Calls({{"Bob", "+15550100", Date2001(600000000), "Outgoing", "00:00:12", "us", "", ""}}));
}

TEST_F(CallHistoryTest, CallStoreNullColumnsBecomeEmptyOrTheStartOf2001) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kCallStorePath, CallStore({"NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL"}));
  EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, IndexKind::ManifestDb), 0)),
            Calls({{"", "", Date2001(0), "Incoming", "00:00:00", "", "", ""}}));
}

TEST_F(CallHistoryTest, AManifestMbdbBackupListsTheOldDatabaseBeforeTheStore) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder
      .AddDatabase(kHomeDomain, kCallStorePath,
                   CallStore({"'Store old', '1', 100, 0, 1, NULL, NULL, NULL",
                              "'Store new', '2', 200, 0, 1, NULL, NULL, NULL"}))
      .AddDatabase(kHomeDomain, kCallDbPath,
                   CallDb("call_history.db-ios7",
                          {"'Old b', '3', 2000, 4, 1, NULL, NULL", "'Old a', '4', 1000, 4, 1, NULL, NULL"}));
  EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, IndexKind::Mbdb), 0)),
            Calls({{"Old b", "3", Date1970(2000), "Incoming", "00:00:01", "", "", ""},
                   {"Old a", "4", Date1970(1000), "Incoming", "00:00:01", "", "", ""},
                   {"Store new", "2", Date2001(200), "Incoming", "00:00:01", "", "", ""},
                   {"Store old", "1", Date2001(100), "Incoming", "00:00:01", "", "", ""}}));
}

TEST_F(CallHistoryTest, AManifestDbBackupReadsOnlyTheStore) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(kHomeDomain, kCallDbPath,
                   CallDb("call_history.db-ios7", {"'Old', '3', 2000, 4, 1, NULL, NULL"}))
      .AddDatabase(kHomeDomain, kCallStorePath, CallStore({"'Store', '1', 100, 1, 1, NULL, NULL, NULL"}));
  EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, IndexKind::ManifestDb), 0)),
            Calls({{"Store", "1", Date2001(100), "Outgoing", "00:00:01", "", "", ""}}));
}

TEST_F(CallHistoryTest, StoresOfTwoDomainsAreReadInIndexOrder) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Renew();
    BackupBuilder builder(kind);
    builder.AddDatabase(kHomeDomain, kCallStorePath, CallStore({"'First', '1', 100, 1, 1, NULL, NULL, NULL"}))
        .AddDatabase(kOtherDomain, kCallStorePath, CallStore({"'Second', '2', 200, 1, 1, NULL, NULL, NULL"}));
    EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, kind), 0)),
              Calls({{"First", "1", Date2001(100), "Outgoing", "00:00:01", "", "", ""},
                     {"Second", "2", Date2001(200), "Outgoing", "00:00:01", "", "", ""}}));
  }
}

TEST_F(CallHistoryTest, CallsWithoutANameAreNamedFromTheAddressBook) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Renew();
    BackupBuilder builder(kind);
    builder.AddDatabase(kHomeDomain, kCallStorePath,
                        CallStore({"'', '+15551234567', 400, 0, 1, NULL, NULL, NULL",
                                   "NULL, '+15550199', 300, 0, 1, NULL, NULL, NULL",
                                   "'Stored', '+15551234567', 200, 0, 1, NULL, NULL, NULL",
                                   "'', '5551234567', 100, 0, 1, NULL, NULL, NULL"}));
    // The number is compared as it is stored with the call: no prefix or
    // country code matching.
    EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, kind), 0)),
              Calls({{"Ada", "+15551234567", Date2001(400), "Incoming", "00:00:01", "", "", ""},
                     {"Grace", "+15550199", Date2001(300), "Incoming", "00:00:01", "", "", ""},
                     {"Stored", "+15551234567", Date2001(200), "Incoming", "00:00:01", "", "", ""},
                     {"", "5551234567", Date2001(100), "Incoming", "00:00:01", "", "", ""}}));
  }
}

TEST_F(CallHistoryTest, OldDatabaseCallsAreNamedToo) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddDatabase(kHomeDomain, kCallDbPath,
                      CallDb("call_history.db-ios7", {"NULL, '+15550199', 1000, 5, 1, NULL, NULL"}));
  EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, IndexKind::Mbdb), 0)),
            Calls({{"Grace", "+15550199", Date1970(1000), "Outgoing", "00:00:01", "", "", ""}}));
}

TEST_F(CallHistoryTest, WithoutAnAddressBookObjectCallsKeepTheirNames) {
  CallHistory calls;
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kCallStorePath, CallStore({"NULL, '+15550199', 1, 0, 1, NULL, NULL, NULL"}));
  EXPECT_EQ(DumpAndFree(calls.FindContent(Analyse(builder, IndexKind::ManifestDb), 0)),
            Calls({{"", "+15550199", Date2001(1), "Incoming", "00:00:01", "", "", ""}}));
}

TEST_F(CallHistoryTest, CallsAreReadOnceAndTheFlagIsIgnored) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Renew();
    BackupBuilder builder(kind);
    builder.AddDatabase(kHomeDomain, kCallStorePath, CallStore({"'Bob', '1', 100, 1, 1, NULL, NULL, NULL"}));
    BackupDevice* device = Analyse(builder, kind);
    const std::string first = DumpAndFree(calls_->FindContent(device, 0));
    EXPECT_EQ(first, Calls({{"Bob", "1", Date2001(100), "Outgoing", "00:00:01", "", "", ""}}));
    std::filesystem::remove(backup_ + builder.StoredPath(kHomeDomain, kCallStorePath));
    EXPECT_EQ(DumpAndFree(calls_->FindContent(device, 1)), first);
  }
}

TEST_F(CallHistoryTest, NoCallsGiveNullEveryTime) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Renew();
    BackupBuilder builder(kind);
    builder.AddMissingFile(kHomeDomain, kCallStorePath)
        .AddFile(kHomeDomain, kCallDbPath, "not a database")
        .AddDatabase(kOtherDomain, kCallStorePath, CallStore({}));
    BackupDevice* device = Analyse(builder, kind);
    EXPECT_EQ(DumpAndFree(calls_->FindContent(device, 0)), "null");
    EXPECT_EQ(DumpAndFree(calls_->FindContent(device, 0)), "null");
  }
}

TEST_F(CallHistoryTest, AnUnknownBackupTypeReadsNothing) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kCallStorePath, CallStore({"'Bob', '1', 100, 1, 1, NULL, NULL, NULL"}));
  BackupDevice* device = Analyse(builder, IndexKind::ManifestDb);
  device->backupType = 3;
  EXPECT_EQ(DumpAndFree(calls_->FindContent(device, 0)), "null");
}

TEST_F(CallHistoryTest, LeavesTheBackupUntouched) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Renew();
    BackupBuilder builder(kind);
    builder.AddDatabase(kHomeDomain, kCallStorePath, CallStore({"'', '+15550199', 100, 1, 1, NULL, NULL, NULL"}))
        .AddDatabase(kHomeDomain, kCallDbPath,
                     CallDb("call_history.db-ios7", {"'', '+15550199', 1, 4, 1, NULL, NULL"}));
    BackupDevice* device = Analyse(builder, kind);
    const std::string before = SnapshotTree(backup_);
    EXPECT_NE(DumpAndFree(calls_->FindContent(device, 0)), "null");
    EXPECT_EQ(SnapshotTree(backup_), before);
  }
}

TEST_F(CallHistoryTest, ANegativeDurationIsReadAsAnUnsignedSecondCount) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kCallStorePath, CallStore({"'Bob', '1', 100, 1, -1, NULL, NULL, NULL"}));
  EXPECT_EQ(DumpAndFree(calls_->FindContent(Analyse(builder, IndexKind::ManifestDb), 0)),
            Calls({{"Bob", "1", Date2001(100), "Outgoing", "1193046:28:15", "", "", ""}}));
}

}  // namespace
}  // namespace yhtest
