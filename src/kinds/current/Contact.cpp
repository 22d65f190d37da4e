#include "kinds/current/Contact.h"

#include <algorithm>

#include "kinds/PersonTexts.h"
#include "kinds/current/AddressBookReader.h"
#include "kinds/current/DeletedDatabases.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char kAddressBook[] = "Library/AddressBook/AddressBook.sqlitedb";
const LostRowsOf kLostPeople{{"ABPerson"}, {}, false, "guid"};

// The name the phone shows for a person: a company's card has only its
// organisation.
std::string ShownName(const Person& person) {
  return person.name.empty() ? std::string(person.texts.View(kPersonOrganization)) : person.name;
}

}  // namespace

// Only the first address book is listed, as the described answers do: a
// second one is a leftover of another account, and its people still name
// the other parties of calls and messages.
std::vector<Person> Contact::Read(const BackupDevice* device) {
  const std::vector<StoredFile> books = StoredFilesAt(device, kAddressBook);
  return ReadOwnDatabases(device, books, [&](Database& database, const StoredFile& file) {
    AddressBook book = ReadAddressBook(database);
    for (size_t at = 0; at < book.people.size(); ++at) {
      for (const std::string& address : book.addresses[at]) directory_.Add(address, ShownName(book.people[at]));
    }
    if (&file != &books.front()) return std::vector<Person>();
    return std::move(book.people);
  });
}

std::vector<Deleted<Person>> Contact::ReadDeleted(const BackupDevice* device) {
  const std::vector<StoredFile> books = StoredFilesAt(device, kAddressBook);
  if (books.empty()) return {};
  std::vector<Deleted<Person>> people =
      ReadDeletedDatabases(device, {books.front()}, kLostPeople, [](Database& database) {
        return ReadAddressBook(database).people;
      });
  // A person whose rowid was lost with its cell's first bytes has id 0.
  for (Deleted<Person>& person : people) person.record.id = std::max<int64_t>(person.record.id, 0);
  return WithoutLiveCopies(device, std::move(people));
}

void Contact::InsertKeys(const Person& person, plist_t dict) const {
  InsertPersonTexts(person.id, person.name.c_str(), person.texts, dict);
}

const std::string* Contact::FindNameByPhone(const BackupDevice* device, const std::string& address) {
  Records(device);
  return directory_.Find(address);
}

}  // namespace current
