#include "kinds/current/Contact.h"

#include "common/Database.h"
#include "kinds/LocalDatabase.h"
#include "kinds/PersonTexts.h"
#include "kinds/current/AddressBookReader.h"

namespace current {

void Contact::Load(const BackupDevice* device) {
  loaded_ = true;
  for (const StoredFile& file : StoredFilesAt(device, "Library/AddressBook/AddressBook.sqlitedb")) {
    Database database = OpenStoredDatabase(device, file);
    AddressBook book = ReadAddressBook(database);
    for (size_t at = 0; at < book.people.size(); ++at) {
      for (const std::string& address : book.addresses[at]) directory_.Add(address, book.people[at].name);
    }
    books_.push_back(std::move(book.people));
  }
}

// Only the first address book is listed, as the described answers do: a
// second one is a leftover of another account, and its people still name
// the other parties of calls and messages.
plist_t Contact::FindContent(void* device, int /*flag*/) {
  if (!loaded_) Load(static_cast<const BackupDevice*>(device));
  plist_t array = plist_new_array();
  if (books_.empty()) return array;
  for (const Person& person : books_.front()) {
    plist_t dict = plist_new_dict();
    InsertPersonTexts(person.id, person.name.c_str(), person.texts, dict);
    plist_array_append_item(array, dict);
  }
  return array;
}

const std::string* Contact::FindNameByPhone(const BackupDevice* device, const std::string& address) {
  if (!loaded_) Load(device);
  return directory_.Find(address);
}

}  // namespace current
