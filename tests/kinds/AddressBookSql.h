#ifndef YH_TESTS_KINDS_ADDRESSBOOKSQL_H
#define YH_TESTS_KINDS_ADDRESSBOOKSQL_H

#include <string>

#include "support/BackupBuilder.h"

namespace yhtest {

// An address book of one device generation: its full schema, then rows. Each
// value is an SQL literal.
class AddressBook {
 public:
  static constexpr int kPhone = 3;
  static constexpr int kEmail = 4;
  static constexpr int kAddress = 5;

  explicit AddressBook(const std::string& schema = "AddressBook.sqlitedb-ios7") : sql_(Schema(schema)) {}

  // A person row with the given columns (", "-separated) and values.
  AddressBook& Person(int id, const std::string& columns, const std::string& values) {
    sql_ += "INSERT INTO ABPerson (ROWID, " + columns + ") VALUES (" + std::to_string(id) + ", " + values + ");\n";
    return *this;
  }
  AddressBook& Label(int id, const std::string& label) {
    sql_ += "INSERT OR IGNORE INTO ABMultiValueLabel (ROWID, value) VALUES (" + std::to_string(id) + ", " + label +
            ");\n";
    return *this;
  }
  // One labelled phone number of a person; label 0 stands for none.
  AddressBook& Value(int uid, int recordId, int label, const std::string& value) {
    return PropertyValue(uid, recordId, kPhone, label, value);
  }
  // One labelled value of a given property (3 phone, 4 e-mail, 5 address, ...).
  AddressBook& PropertyValue(int uid, int recordId, int property, int label, const std::string& value) {
    const std::string labelValue = label ? std::to_string(label) : "NULL";
    sql_ += "INSERT INTO ABMultiValue (UID, record_id, property, identifier, label, value) VALUES (" +
            std::to_string(uid) + ", " + std::to_string(recordId) + ", " + std::to_string(property) + ", 0, " +
            labelValue + ", " + value + ");\n";
    return *this;
  }
  // One line of a structured value (a postal address): key name and text.
  AddressBook& Entry(int parentUid, int keyId, const std::string& key, const std::string& value) {
    sql_ += "INSERT OR IGNORE INTO ABMultiValueEntryKey (ROWID, value) VALUES (" + std::to_string(keyId) + ", " +
            key + ");\nINSERT INTO ABMultiValueEntry (parent_id, key, value) VALUES (" +
            std::to_string(parentUid) + ", " + std::to_string(keyId) + ", " + value + ");\n";
    return *this;
  }
  // A person whose only value is one phone number.
  AddressBook& PersonWithNumber(int id, const std::string& first, const std::string& number) {
    return Person(id, "First", "'" + first + "'").Label(1, "'_$!<Mobile>!$_'").Value(id, id, 1, number);
  }

  const std::string& Sql() const { return sql_; }

 private:
  std::string sql_;
};

// Where the address book lies on the device.
inline constexpr char kAddressBookPath[] = "Library/AddressBook/AddressBook.sqlitedb";

}  // namespace yhtest

#endif
