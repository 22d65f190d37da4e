#include <gtest/gtest.h>

#include <string>

#include "kinds/AddressBookSql.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};

// Ada has two Home values (a number and an address), a postal address of
// several lines, an unlabelled web page and a mobile number.
AddressBook AdaBook(const std::string& schema) {
  AddressBook book(schema);
  book.Person(1, "First, Last, Note, Birthday, CreationDate, ModificationDate",
              "'Ada', 'Lovelace', 'Analyst', '-496195200', 583675200, 600000000")
      .Label(1, "'_$!<Mobile>!$_'")
      .Label(2, "'_$!<Home>!$_'")
      .Value(10, 1, 1, "'+1 (617) 555-0199'")
      .Value(11, 1, 2, "'555-0100'")
      .PropertyValue(12, 1, AddressBook::kEmail, 2, "'ada@example.org'")
      .PropertyValue(13, 1, AddressBook::kAddress, 2, "NULL")
      .Entry(13, 1, "'Street'", "'12 St James''s Square'")
      .Entry(13, 2, "'City'", "'London'")
      .Entry(13, 3, "'ZIP'", "'SW1Y 4JH'")
      .Entry(13, 4, "'Country'", "'United Kingdom'")
      .Entry(13, 5, "'CountryCode'", "'gb'")
      .PropertyValue(14, 1, 22, 0, "'https://ada.example'");
  return book;
}

const char kAda[] =
    "{\"id\":1u,\"name\":\"Ada Lovelace\",\"organization\":\"\",\"department\":\"\",\"note\":\"Analyst\","
    "\"birthday\":\"1985-04-12\",\"jobTitle\":\"\",\"nickName\":\"\",\"creationDate\":\"2019-07-01 12:00:00\","
    "\"properties\":{\"Mobile\":\"+1 (617) 555-0199\",\"Home\":\"555-0100\",\"Home 2\":\"ada@example.org\","
    "\"Home 3\":\"12 St James's Square\nLondon\nSW1Y 4JH\nUnited Kingdom\",\"url\":\"https://ada.example\"},"
    "\"modification_date\":\"2020-01-06 10:40:00\",\"picture_path\":\"\",\"picture_mime_type\":\"\","
    "\"picture_size\":0u}";
// The keys of a person without a modification date or a picture.
const char kNoExtras[] =
    "\"modification_date\":\"\",\"picture_path\":\"\",\"picture_mime_type\":\"\",\"picture_size\":0u";

TEST(CurrentContacts, NothingLostOfRepeatedLabelsAddressesAndUnlabelledValues) {
  for (const char* schema : {"AddressBook.sqlitedb-ios7", "AddressBook.sqlitedb-ios15"}) {
    for (IndexKind kind : kIndexKinds) {
      TempDir root;
      const std::string backup =
          BackupBuilder(kind).AddDatabase("HomeDomain", kAddressBookPath, AdaBook(schema).Sql()).Write(root.Path() + "b");
      ScopedTimeZone utc("UTC");
      ServedBackup served(backup, Service::Current);
      EXPECT_EQ(served.Answer(ContentContact), std::string("[") + kAda + "]") << schema;
    }
  }
}

// Both dates are instants shown in the host's zone: Berlin is two hours
// ahead in July and one in January.
TEST(CurrentContacts, TheModificationDateIsALocalDate) {
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb)
          .AddDatabase("HomeDomain", kAddressBookPath, AdaBook("AddressBook.sqlitedb-ios15").Sql())
          .Write(root.Path() + "b");
  ScopedTimeZone berlin("Europe/Berlin");
  ServedBackup served(backup, Service::Current);
  const std::string answer = served.Answer(ContentContact);
  EXPECT_NE(answer.find("\"creationDate\":\"2019-07-01 14:00:00\""), std::string::npos) << answer;
  EXPECT_NE(answer.find("\"modification_date\":\"2020-01-06 11:40:00\""), std::string::npos) << answer;
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(described.Answer(ContentContact).find("modification_date"), std::string::npos);
}

TEST(CurrentContacts, PeopleAddedInTheWalAreListed) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabaseWithWal("HomeDomain", kAddressBookPath, AdaBook("AddressBook.sqlitedb-ios15").Sql(),
                                                     "INSERT INTO ABPerson (ROWID, First) VALUES (2, 'Grace');\n")
                                 .Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentContact),
            std::string("[") + kAda +
                ",{\"id\":2u,\"name\":\"Grace\",\"organization\":\"\",\"department\":\"\",\"note\":\"\","
                "\"birthday\":\"\",\"jobTitle\":\"\",\"nickName\":\"\",\"creationDate\":\"\",\"properties\":{}," +
                kNoExtras + "}]");
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(described.Answer(ContentContact).find("Grace"), std::string::npos);
}

// A damaged table may declare a column of its own named ROWID: people then
// come in any order and an id may repeat. They are listed by ascending id,
// the last row of a repeated id wins, and values find their person.
TEST(CurrentContacts, PeopleOutOfOrderOrRepeatedAreListedByIdWithTheirValues) {
  const char kSql[] =
      "CREATE TABLE ABPerson (ROWID INTEGER, First TEXT, Last TEXT);\n"
      "INSERT INTO ABPerson VALUES (7, 'Old', 'Seven'), (3, 'Grace', 'Hopper'), (7, 'Ada', 'Lovelace');\n"
      "CREATE TABLE ABMultiValueLabel (value TEXT);\n"
      "INSERT INTO ABMultiValueLabel (rowid, value) VALUES (1, '_$!<Mobile>!$_');\n"
      "CREATE TABLE ABMultiValue (record_id INTEGER, property INTEGER, label INTEGER, value TEXT);\n"
      "INSERT INTO ABMultiValue VALUES (7, 3, 1, '555-0107'), (3, 3, 1, '555-0103'), (9, 3, 1, '555-0109'),\n"
      "  (3, 3, 1, '555-0113');\n";
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kAddressBookPath, kSql).Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  const std::string empty =
      "\"organization\":\"\",\"department\":\"\",\"note\":\"\",\"birthday\":\"\",\"jobTitle\":\"\","
      "\"nickName\":\"\",\"creationDate\":\"\",";
  EXPECT_EQ(served.Answer(ContentContact),
            "[{\"id\":3u,\"name\":\"Grace Hopper\"," + empty +
                "\"properties\":{\"Mobile\":\"555-0103\",\"Mobile 2\":\"555-0113\"}," + kNoExtras +
                "},{\"id\":7u,\"name\":\"Ada Lovelace\"," + empty + "\"properties\":{\"Mobile\":\"555-0107\"}," +
                kNoExtras + "}]");
}

// Some address books write their line keys in lower case: they are matched
// without regard to case, so the address is still written street first.
TEST(CurrentContacts, AddressLineKeysMatchWithoutRegardToCase) {
  AddressBook book("AddressBook.sqlitedb-ios15");
  book.Person(1, "First", "'Ada'")
      .Label(2, "'_$!<Home>!$_'")
      .PropertyValue(13, 1, AddressBook::kAddress, 2, "NULL")
      .Entry(13, 1, "'zip'", "'SW1Y 4JH'")
      .Entry(13, 2, "'countrycode'", "'gb'")
      .Entry(13, 3, "'COUNTRY'", "'United Kingdom'")
      .Entry(13, 4, "'city'", "'London'")
      .Entry(13, 5, "'street'", "'12 St James''s Square'");
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kAddressBookPath, book.Sql()).Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current);
  const std::string answer = served.Answer(ContentContact);
  EXPECT_NE(answer.find("\"Home\":\"12 St James's Square\nLondon\nSW1Y 4JH\nUnited Kingdom\""), std::string::npos)
      << answer;
}

// A stored count too large for any day is shown as it was stored.
TEST(CurrentContacts, ABirthdayBeyondAnyDayIsShownAsStored) {
  const char kSql[] =
      "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT, Birthday TEXT);\n"
      "INSERT INTO ABPerson VALUES (1, 'Far', '5.5e252'), (2, 'Near', '-1e19'), (3, 'Day', '-504921600');\n";
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kAddressBookPath, kSql).Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  const std::string answer = served.Answer(ContentContact);
  EXPECT_NE(answer.find("\"birthday\":\"5.5e252\""), std::string::npos) << answer;
  EXPECT_NE(answer.find("\"birthday\":\"-1e19\""), std::string::npos) << answer;
  EXPECT_NE(answer.find("\"birthday\":\"1985-01-01\""), std::string::npos) << answer;
}

TEST(CurrentContacts, NoAddressBookGivesAnEmptyArray) {
  TempDir root;
  ServedBackup served(BackupBuilder(IndexKind::Mbdb).Write(root.Path() + "b"), Service::Current);
  EXPECT_EQ(served.Answer(ContentContact), "[]");
}

}  // namespace
}  // namespace yhtest
