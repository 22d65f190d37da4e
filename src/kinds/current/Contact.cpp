#include "kinds/current/Contact.h"

#include "kinds/PersonTexts.h"
#include "kinds/current/AddressBookReader.h"
#include "kinds/current/StoredDatabases.h"

namespace current {

// Only the first address book is listed, as the described answers do: a
// second one is a leftover of another account, and its people still name
// the other parties of calls and messages.
std::vector<Person> Contact::Read(const BackupDevice* device) {
  bool first = true;
  return ReadStoredDatabases(device, StoredFilesAt(device, "Library/AddressBook/AddressBook.sqlitedb"),
                             [&](Database& database) {
                               AddressBook book = ReadAddressBook(database);
                               for (size_t at = 0; at < book.people.size(); ++at) {
                                 for (const std::string& address : book.addresses[at]) {
                                   directory_.Add(address, book.people[at].name);
                                 }
                               }
                               if (!first) return std::vector<Person>();
                               first = false;
                               return std::move(book.people);
                             });
}

void Contact::InsertKeys(const Person& person, plist_t dict) const {
  InsertPersonTexts(person.id, person.name.c_str(), person.texts, dict);
}

const std::string* Contact::FindNameByPhone(const BackupDevice* device, const std::string& address) {
  Records(device);
  return directory_.Find(address);
}

}  // namespace current
