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
  book.Person(1, "First, Last, Note, Birthday, CreationDate",
              "'Ada', 'Lovelace', 'Analyst', '-496195200', 583675200")
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
    "\"Home 3\":\"12 St James's Square\nLondon\nSW1Y 4JH\nUnited Kingdom\",\"url\":\"https://ada.example\"}}";

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
                "\"birthday\":\"\",\"jobTitle\":\"\",\"nickName\":\"\",\"creationDate\":\"\",\"properties\":{}}]");
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(described.Answer(ContentContact).find("Grace"), std::string::npos);
}

TEST(CurrentContacts, NoAddressBookGivesAnEmptyArray) {
  TempDir root;
  ServedBackup served(BackupBuilder(IndexKind::Mbdb).Write(root.Path() + "b"), Service::Current);
  EXPECT_EQ(served.Answer(ContentContact), "[]");
}

}  // namespace
}  // namespace yhtest
