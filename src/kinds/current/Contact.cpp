#include "kinds/current/Contact.h"

#include "common/Database.h"
#include "common/PlistHelpers.h"
#include "kinds/LocalDatabase.h"
#include "kinds/current/AddressBookReader.h"

namespace current {

void Contact::Load(const BackupDevice* device) {
  loaded_ = true;
  for (const StoredFile& file : StoredFilesAt(device, "Library/AddressBook/AddressBook.sqlitedb")) {
    const LocalDatabase local = LocalDatabaseOf(device, file);
    Database database(local.path, local.access);
    books_.push_back(ReadAddressBook(database));
  }
  for (const std::vector<Person>& book : books_) {
    for (const Person& person : book) {
      for (const std::string& address : person.addresses) directory_.Add(address, person.name);
    }
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
    plist_dict_set_item(dict, "id", plist_new_uint(static_cast<uint64_t>(person.id)));
    InsertPlistDictString(dict, "name", person.name.c_str());
    InsertPlistDictString(dict, "organization", person.organization.c_str());
    InsertPlistDictString(dict, "department", person.department.c_str());
    InsertPlistDictString(dict, "note", person.note.c_str());
    InsertPlistDictString(dict, "birthday", person.birthday.c_str());
    InsertPlistDictString(dict, "jobTitle", person.jobTitle.c_str());
    InsertPlistDictString(dict, "nickName", person.nickname.c_str());
    InsertPlistDictString(dict, "creationDate", person.creationDate.c_str());
    plist_t properties = plist_new_dict();
    for (const auto& [label, value] : person.properties) InsertPlistDictString(properties, label.c_str(), value.c_str());
    plist_dict_set_item(dict, "properties", properties);
    plist_array_append_item(array, dict);
  }
  return array;
}

const std::string* Contact::FindNameByPhone(const BackupDevice* device, const std::string& address) {
  if (!loaded_) Load(device);
  return directory_.Find(address);
}

}  // namespace current
