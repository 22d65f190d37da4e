#include "kinds/Contact.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/DateHelpers.h"
#include "kinds/AddressBookSql.h"
#include "kinds/KindFixture.h"
#include "support/BackupBuilder.h"
#include "support/PlistDump.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const char kHomeDomain[] = "HomeDomain";
const char kOtherDomain[] = "AppDomainGroup-group.com.example.contacts";

const char* const kSchemas[] = {"AddressBook.sqlitedb-ios5", "AddressBook.sqlitedb-ios7",
                                "AddressBook.sqlitedb-ios15"};
const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};

std::string Name(IndexKind kind) { return kind == IndexKind::Mbdb ? "Manifest.mbdb" : "Manifest.db"; }

std::string Take(char* text) {
  std::string copy(text);
  std::free(text);
  return copy;
}

std::string Date2001(int32_t seconds) { return Take(Convert2001GMTtoDate(seconds)); }

// The expected dictionary of one person; `properties` is the dumped
// "properties" dictionary.
struct Expected {
  int id = 0;
  std::string name;
  std::string properties = "{}";
  std::string organization;
  std::string department;
  std::string note;
  std::string birthday;
  std::string jobTitle;
  std::string nickName;
  std::string creationDate;

  std::string Dump() const {
    return "{\"id\":" + std::to_string(id) + "u,\"name\":\"" + name + "\",\"organization\":\"" + organization +
           "\",\"department\":\"" + department + "\",\"note\":\"" + note + "\",\"birthday\":\"" + birthday +
           "\",\"jobTitle\":\"" + jobTitle + "\",\"nickName\":\"" + nickName + "\",\"creationDate\":\"" +
           creationDate + "\",\"properties\":" + properties + "}";
  }
};

Expected Who(int id, const std::string& name, const std::string& properties = "{}") {
  Expected expected;
  expected.id = id;
  expected.name = name;
  expected.properties = properties;
  return expected;
}

class ContactTest : public ::testing::Test {
 protected:
  // Writes the backup and reads its index.
  BackupDevice* Analyse(const BackupBuilder& builder, IndexKind kind) {
    backup_ = builder.Write(dir_.Path() + "backup" + std::to_string(++backups_));
    device_ = std::make_unique<AnalysedDevice>(backup_, kind);
    EXPECT_TRUE(device_->IndexRead());
    return device_->Get();
  }
  BackupDevice* AnalyseAddressBook(const AddressBook& book, IndexKind kind) {
    return Analyse(BackupBuilder(kind).AddDatabase(kHomeDomain, kAddressBookPath, book.Sql()), kind);
  }
  std::string Stored(const BackupBuilder& builder, const std::string& domain) const {
    return backup_ + builder.StoredPath(domain, kAddressBookPath);
  }
  // The name found for a number as a text, "(none)" for NULL.
  std::string NameOf(Contact& contact, const char* phone) {
    const char* name = contact.FindNameByPhone(device_->Get(), phone);
    return name ? name : "(none)";
  }

  TempDir dir_;
  int backups_ = 0;
  std::string backup_;
  std::unique_ptr<AnalysedDevice> device_;
};

TEST_F(ContactTest, ListsEveryPersonWithTheirFieldsInRecordIdOrder) {
  for (const char* schema : kSchemas) {
    for (IndexKind kind : kIndexKinds) {
      SCOPED_TRACE(std::string(schema) + " " + Name(kind));
      AddressBook book(schema);
      book.Person(7, "First, Middle, Last, Organization, Department, Note, Birthday, JobTitle, Nickname, CreationDate",
                  "'Ada', 'King', 'Lovelace', 'Analytical Engines', 'Research', 'likes numbers', "
                  "'1815-12-10 12:00:00 +0000', 'Countess', 'Ada', 600000000")
          .Person(2, "Last", "'Babbage'");
      Contact contact;
      const std::string result = DumpAndFree(contact.FindContent(AnalyseAddressBook(book, kind), 0));

      Expected babbage = Who(2, "Babbage");
      Expected ada = Who(7, "Ada King Lovelace");
      ada.organization = "Analytical Engines";
      ada.department = "Research";
      ada.note = "likes numbers";
      ada.birthday = "1815-12-10 12:00:00 +0000";
      ada.jobTitle = "Countess";
      ada.nickName = "Ada";
      ada.creationDate = Date2001(600000000);
      EXPECT_EQ(result, "[" + babbage.Dump() + "," + ada.Dump() + "]");
    }
  }
}

TEST_F(ContactTest, NamePartsAreJoinedBySingleBlanks) {
  AddressBook book;
  book.Person(1, "Middle", "'  Grace  '")
      .Person(2, "First, Last", "'Alan  Mathison', ' Turing '")
      .Person(3, "Organization", "'Nobody Inc.'")
      .Person(4, "First, Middle, Last", "'', '   ', ''");
  Contact contact;
  const std::string result = DumpAndFree(contact.FindContent(AnalyseAddressBook(book, IndexKind::ManifestDb), 0));
  Expected nobody = Who(3, "");
  nobody.organization = "Nobody Inc.";
  EXPECT_EQ(result, "[" + Who(1, "Grace").Dump() + "," + Who(2, "Alan Mathison Turing").Dump() + "," +
                        nobody.Dump() + "," + Who(4, "").Dump() + "]");
}

TEST_F(ContactTest, AnEmptyOrMissingCreationDateStaysEmpty) {
  AddressBook book;
  book.Person(1, "First, CreationDate", "'Null', NULL")
      .Person(2, "First, CreationDate", "'Empty', ''")
      .Person(3, "First, CreationDate", "'Zero', 0")
      .Person(4, "First, CreationDate", "'Negative', -5");
  Contact contact;
  const std::string result = DumpAndFree(contact.FindContent(AnalyseAddressBook(book, IndexKind::Mbdb), 0));
  Expected zero = Who(3, "Zero");
  zero.creationDate = Date2001(0);
  Expected negative = Who(4, "Negative");
  negative.creationDate = Date2001(0);
  EXPECT_EQ(result, "[" + Who(1, "Null").Dump() + "," + Who(2, "Empty").Dump() + "," + zero.Dump() +
                        "," + negative.Dump() + "]");
}

TEST_F(ContactTest, BuiltInLabelsLoseTheirMarkersAndCustomLabelsStayWhole) {
  AddressBook book;
  book.Person(1, "First", "'Ada'")
      .Label(1, "'_$!<Home>!$_'")
      .Label(2, "'_$!<>!$_'")
      .Label(3, "'Work>!$_'")
      .Label(4, "'Boat'")
      .Label(5, "'>!$_backwards_$!<'")
      .Value(1, 1, 1, "'+44 20 7946 0000'")
      .Value(2, 1, 2, "'ada@example.com'")
      .Value(3, 1, 3, "'555-123-4567'")
      .Value(4, 1, 4, "'+1 (555) 010-0199'")
      .Value(5, 1, 0, "'no label'")
      .Value(6, 1, 5, "'x'");
  Contact contact;
  const std::string result = DumpAndFree(contact.FindContent(AnalyseAddressBook(book, IndexKind::ManifestDb), 0));
  // Ordinary numbers keep their dashes in the listing; only the lookup drops them.
  Expected ada = Who(1, "Ada",
               "{\"Home\":\"+44 20 7946 0000\",\"\":\"x\",\"Work>!$_\":\"555-123-4567\","
               "\"Boat\":\"+1 (555) 010-0199\"}");
  // The empty label is used three times (no text between the markers, no
  // label, markers the wrong way round); each insertion replaces the last.
  EXPECT_EQ(result, "[" + ada.Dump() + "]");
}

TEST_F(ContactTest, AValueOfRawDigitBytesAndDashesLosesItsDashes) {
  AddressBook book;
  book.Person(1, "First", "'Ada'")
      .Label(1, "'raw'")
      .Label(2, "'dashes'")
      .Label(3, "'empty'")
      .Value(1, 1, 1, "char(1, 45, 2, 45, 3)")
      .Value(2, 1, 2, "'---'")
      .Value(3, 1, 3, "''");
  Contact contact;
  const std::string result = DumpAndFree(contact.FindContent(AnalyseAddressBook(book, IndexKind::Mbdb), 0));
  EXPECT_EQ(result, "[" + Who(1, "Ada", "{\"raw\":\"\x01\x02\x03\",\"dashes\":\"\",\"empty\":\"\"}").Dump() + "]");
}

TEST_F(ContactTest, StructuredValuesGiveOnePropertyPerEntry) {
  AddressBook book;
  book.Person(1, "First", "'Ada'")
      .Label(1, "'_$!<Work>!$_'")
      .Label(2, "'_$!<Mobile>!$_'")
      .Label(3, "'_$!<Home>!$_'")
      .Value(1, 1, 1, "NULL")
      .Entry(1, 1, "'Street'", "'12 St James''s Square'")
      .Value(2, 1, 2, "'+44 20 7946 0000'")
      .Value(3, 1, 3, "NULL")
      .Entry(3, 2, "'ZIP'", "'90210'")
      .Entry(3, 3, "'Phone'", "'555-0142'")
      // A structured value without a label has no entries.
      .Value(4, 1, 0, "NULL")
      .Entry(4, 4, "'Country'", "'55501'");
  Contact contact;
  const std::string result = DumpAndFree(contact.FindContent(AnalyseAddressBook(book, IndexKind::ManifestDb), 0));
  // The value rows come first, then the entry rows, each "key:value"; a label
  // met again keeps its first place and takes the later text.
  EXPECT_EQ(NameOf(contact, "90210"), "Ada");
  EXPECT_EQ(NameOf(contact, "5550142"), "Ada");
  EXPECT_EQ(NameOf(contact, "55501"), "(none)");
  // Which entry row of a value comes last the query leaves open.
  const auto withHome = [](const std::string& home) {
    return "[" +
           Who(1, "Ada",
                    "{\"Work\":\"Street:12 St James's Square\",\"Mobile\":\"+44 20 7946 0000\",\"Home\":\"" +
                        home + "\",\"\":\"\"}")
               .Dump() +
           "]";
  };
  EXPECT_TRUE(result == withHome("ZIP:90210") || result == withHome("Phone:555-0142")) << result;
}

TEST_F(ContactTest, ValuesOfAPersonWithoutARowAreDropped) {
  AddressBook book;
  book.PersonWithNumber(1, "Ada", "'+15550100'").Value(9, 42, 1, "'+15550142'");
  Contact contact;
  const std::string result = DumpAndFree(contact.FindContent(AnalyseAddressBook(book, IndexKind::ManifestDb), 0));
  EXPECT_EQ(result, "[" + Who(1, "Ada", "{\"Mobile\":\"+15550100\"}").Dump() + "]");
  EXPECT_EQ(NameOf(contact, "+15550142"), "(none)");
}

TEST_F(ContactTest, ALaterQueryThatFailsKeepsThePeopleAlreadyRead) {
  // A database with people but no value tables.
  const std::string sql =
      "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, First TEXT, Last TEXT, Middle TEXT, "
      "Organization TEXT, Department TEXT, Note TEXT, Birthday TEXT, JobTitle TEXT, Nickname TEXT, "
      "CreationDate INTEGER);\nINSERT INTO ABPerson (ROWID, First) VALUES (3, 'Ada');\n";
  Contact contact;
  BackupDevice* device =
      Analyse(BackupBuilder(IndexKind::Mbdb).AddDatabase(kHomeDomain, kAddressBookPath, sql), IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(contact.FindContent(device, 0)), "[" + Who(3, "Ada").Dump() + "]");
}

TEST_F(ContactTest, ABackupWithoutAnAddressBookGivesAnEmptyArrayEveryTime) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    Contact contact;
    BackupDevice* device = Analyse(BackupBuilder(kind).AddMissingFile(kHomeDomain, kAddressBookPath), kind);
    EXPECT_EQ(DumpAndFree(contact.FindContent(device, 0)), "[]");
    EXPECT_EQ(DumpAndFree(contact.FindContent(device, 1)), "[]");
    EXPECT_EQ(NameOf(contact, "+15550100"), "(none)");
  }
}

TEST_F(ContactTest, AnUnknownBackupTypeReadsNothing) {
  AddressBook book;
  book.PersonWithNumber(1, "Ada", "'+15550100'");
  BackupDevice* device = AnalyseAddressBook(book, IndexKind::ManifestDb);
  device->backupType = 2;
  Contact contact;
  EXPECT_EQ(DumpAndFree(contact.FindContent(device, 0)), "[]");
  EXPECT_EQ(NameOf(contact, "+15550100"), "(none)");
}

TEST_F(ContactTest, PeopleAreReadOnceAndKept) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    AddressBook book;
    book.PersonWithNumber(1, "Ada", "'+15550100'");
    BackupBuilder builder(kind);
    builder.AddDatabase(kHomeDomain, kAddressBookPath, book.Sql());
    BackupDevice* device = Analyse(builder, kind);
    Contact contact;
    const std::string first = DumpAndFree(contact.FindContent(device, 0));
    std::filesystem::remove(Stored(builder, kHomeDomain));
    EXPECT_EQ(DumpAndFree(contact.FindContent(device, 0)), first);
    EXPECT_EQ(NameOf(contact, "+15550100"), "Ada");
  }
}

TEST_F(ContactTest, TheNameLookupReadsThePeopleWhenAskedFirst) {
  AddressBook book;
  book.PersonWithNumber(1, "Ada", "'+15550100'");
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kAddressBookPath, book.Sql());
  Analyse(builder, IndexKind::ManifestDb);
  Contact contact;
  EXPECT_EQ(NameOf(contact, "+15550100"), "Ada");
  std::filesystem::remove(Stored(builder, kHomeDomain));
  EXPECT_EQ(DumpAndFree(contact.FindContent(device_->Get(), 0)),
            "[" + Who(1, "Ada", "{\"Mobile\":\"+15550100\"}").Dump() + "]");
}

TEST_F(ContactTest, AnAddressBookHoldingNobodyIsNotReadAgain) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile(kHomeDomain, kAddressBookPath, "not a database");
  BackupDevice* device = Analyse(builder, IndexKind::ManifestDb);
  Contact contact;
  EXPECT_EQ(DumpAndFree(contact.FindContent(device, 0)), "[]");
  // Were the file read again, this person would be listed.
  const std::string stored = Stored(builder, kHomeDomain);
  std::filesystem::remove(stored);
  AddressBook book;
  book.PersonWithNumber(1, "Ada", "'+15550100'");
  WriteDatabase(stored, book.Sql());
  EXPECT_EQ(DumpAndFree(contact.FindContent(device, 0)), "[]");
  EXPECT_EQ(NameOf(contact, "+15550100"), "(none)");
}

TEST_F(ContactTest, OnlyTheFirstAddressBookIsListedButEveryOneNamesNumbers) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    AddressBook first;
    first.PersonWithNumber(1, "Ada", "'+15550100'");
    AddressBook second;
    second.PersonWithNumber(1, "Grace", "'+15550100'").PersonWithNumber(2, "Alan", "'+15550199'");
    BackupDevice* device = Analyse(BackupBuilder(kind)
                                       .AddDatabase(kHomeDomain, kAddressBookPath, first.Sql())
                                       .AddDatabase(kOtherDomain, kAddressBookPath, second.Sql()),
                                   kind);
    Contact contact;
    EXPECT_EQ(DumpAndFree(contact.FindContent(device, 0)),
              "[" + Who(1, "Ada", "{\"Mobile\":\"+15550100\"}").Dump() + "]");
    EXPECT_EQ(NameOf(contact, "+15550100"), "Ada");
    EXPECT_EQ(NameOf(contact, "+15550199"), "Alan");
  }
}

TEST_F(ContactTest, AnUnreadableFirstAddressBookListsNobody) {
  AddressBook second;
  second.PersonWithNumber(1, "Grace", "'+15550100'");
  BackupDevice* device = Analyse(BackupBuilder(IndexKind::ManifestDb)
                                     .AddFile(kHomeDomain, kAddressBookPath, "not a database")
                                     .AddDatabase(kOtherDomain, kAddressBookPath, second.Sql()),
                                 IndexKind::ManifestDb);
  Contact contact;
  EXPECT_EQ(DumpAndFree(contact.FindContent(device, 0)), "[]");
  EXPECT_EQ(NameOf(contact, "+15550100"), "Grace");
}

TEST_F(ContactTest, NumbersAreComparedAfterCleaningTheStoredValueOnly) {
  AddressBook book;
  book.Person(1, "First", "'Ada'")
      .Label(1, "'_$!<Mobile>!$_'")
      .Value(1, 1, 1, "'+1 (555) 123-4567'")
      .Person(2, "First", "'Grace'")
      .Value(2, 2, 1, "'555.010.0100 ext. #12'");
  Contact contact;
  AnalyseAddressBook(book, IndexKind::ManifestDb);
  EXPECT_EQ(NameOf(contact, "+15551234567"), "Ada");
  EXPECT_EQ(NameOf(contact, "5551234567"), "(none)");
  EXPECT_EQ(NameOf(contact, "+1 (555) 123-4567"), "(none)");
  EXPECT_EQ(NameOf(contact, "1234567"), "(none)");
  EXPECT_EQ(NameOf(contact, "5550100100"), "(none)");
  EXPECT_EQ(NameOf(contact, "5550100100#12"), "Grace");
  EXPECT_EQ(NameOf(contact, ""), "(none)");
  EXPECT_EQ(NameOf(contact, nullptr), "(none)");
}

TEST_F(ContactTest, NumbersStoredTogetherAnswerEachOnItsOwn) {
  AddressBook book;
  book.Person(1, "First", "'Ada'")
      .Label(1, "'_$!<Mobile>!$_'")
      .Value(1, 1, 1, "'555-0100; 555-0199;'")
      .Person(2, "First", "'Grace'")
      .Value(2, 2, 1, "';;'");
  Contact contact;
  AnalyseAddressBook(book, IndexKind::Mbdb);
  EXPECT_EQ(NameOf(contact, "5550100"), "Ada");
  EXPECT_EQ(NameOf(contact, "5550199"), "Ada");
  EXPECT_EQ(NameOf(contact, "5550100;5550199"), "(none)");
  EXPECT_EQ(NameOf(contact, ";"), "(none)");
  // Grace's value holds empty pieces only; the empty number matches nothing.
  EXPECT_EQ(NameOf(contact, ""), "(none)");
}

TEST_F(ContactTest, EveryValueTakesPartWhateverItsLabel) {
  AddressBook book;
  book.Person(1, "First", "'Ada'")
      .Label(1, "'_$!<Anniversary>!$_'")
      .Label(2, "'_$!<HomePage>!$_'")
      .Value(1, 1, 1, "'2001-01-01'")
      .Value(2, 1, 2, "'http://example.com/7'")
      .Label(3, "'_$!<Home>!$_'")
      .Value(3, 1, 3, "NULL")
      .Entry(3, 1, "'ZIP'", "'90210'");
  Contact contact;
  AnalyseAddressBook(book, IndexKind::ManifestDb);
  EXPECT_EQ(NameOf(contact, "20010101"), "Ada");
  EXPECT_EQ(NameOf(contact, "7"), "Ada");
  EXPECT_EQ(NameOf(contact, "90210"), "Ada");
}

TEST_F(ContactTest, TheLowestRecordIdOfTheFirstDatabaseWinsASharedNumber) {
  AddressBook book;
  book.PersonWithNumber(9, "Zed", "'+15550100'").PersonWithNumber(4, "Dee", "'+1 555 0100'");
  Contact contact;
  AnalyseAddressBook(book, IndexKind::ManifestDb);
  const char* name = contact.FindNameByPhone(device_->Get(), "+15550100");
  ASSERT_NE(name, nullptr);
  EXPECT_STREQ(name, "Dee");
  // The text belongs to the contacts object and is the same each time.
  EXPECT_EQ(contact.FindNameByPhone(device_->Get(), "+15550100"), name);
}

TEST_F(ContactTest, LeavesTheBackupUntouched) {
  for (IndexKind kind : kIndexKinds) {
    SCOPED_TRACE(Name(kind));
    AddressBook book;
    book.PersonWithNumber(1, "Ada", "'+15550100'");
    BackupDevice* device = AnalyseAddressBook(book, kind);
    const std::string before = SnapshotTree(backup_);
    Contact contact;
    EXPECT_NE(DumpAndFree(contact.FindContent(device, 0)), "[]");
    EXPECT_EQ(NameOf(contact, "+15550100"), "Ada");
    EXPECT_EQ(SnapshotTree(backup_), before);
  }
}

TEST_F(ContactTest, ANegativeRecordIdComesFirstAndIsSignExtended) {
  AddressBook book;
  book.Person(2, "First", "'Two'").Person(-1, "First", "'Minus'");
  Contact contact;
  const std::string result = DumpAndFree(contact.FindContent(AnalyseAddressBook(book, IndexKind::ManifestDb), 0));
  // Ids are signed and ordered as such; the unsigned node holds -1 widened to 64 bits.
  std::string minus = Who(-1, "Minus").Dump();
  minus.replace(minus.find("-1u"), 3, "18446744073709551615u");
  EXPECT_EQ(result, "[" + minus + "," + Who(2, "Two").Dump() + "]");
}

TEST_F(ContactTest, ASpacedNumberAnswersOnlyToItsFullCleanedForm) {
  AddressBook book;
  book.PersonWithNumber(1, "Ada", "'+1 555 123 4567'");
  Contact contact;
  AnalyseAddressBook(book, IndexKind::Mbdb);
  EXPECT_EQ(NameOf(contact, "5551234567"), "(none)");
  EXPECT_EQ(NameOf(contact, "15551234567"), "(none)");
  EXPECT_EQ(NameOf(contact, "+15551234567"), "Ada");
}

}  // namespace
}  // namespace yhtest
