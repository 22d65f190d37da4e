#include "kinds/current/Contact.h"

#include <algorithm>
#include <optional>
#include <string>

#include "common/PlistHelpers.h"
#include "kinds/PersonTexts.h"
#include "kinds/current/AddressBookReader.h"
#include "kinds/current/DeletedDatabases.h"
#include "kinds/current/StoredDatabases.h"
#include "session/BackupSession.h"

namespace current {
namespace {

const char kAddressBook[] = "Library/AddressBook/AddressBook.sqlitedb";
// The pictures of an address book's people lie beside it.
const char kImages[] = "Library/AddressBook/AddressBookImages.sqlitedb";
const LostRowsOf kLostPeople{{"ABPerson"}, {}, false, "guid"};

// The name the phone shows for a person: a company's card has only its
// organisation.
std::string ShownName(const Person& person) {
  return person.name.empty() ? std::string(person.texts.View(kPersonOrganization)) : person.name;
}

// The pictures of the people of `book`, written into a new folder of the
// record's private folder.
std::vector<ContactPicture> ReadPictures(const BackupDevice* device, const StoredFile& book) {
  const std::optional<StoredFile> images = StoredFileIn(device, book.domain, kImages);
  if (!images) return {};
  BackupSession* session = SessionOf(device);
  const std::string folder = session ? session->NewCopyFolder() : std::string();
  return ReadStoredDatabases(device, images,
                             [&folder](Database& database) { return WriteContactPictures(database, folder); });
}

// Gives each person with a picture among `pictures` its picture.
template <class People, class PersonOf>
void AddPictures(const std::vector<ContactPicture>& pictures, People& people, PersonOf personOf) {
  for (auto& entry : people) {
    Person& person = personOf(entry);
    if (const ContactPicture* picture = FindContactPicture(pictures, person.id)) person.picture = *picture;
  }
}

}  // namespace

// Only the first address book is listed, as the described answers do: a
// second one is a leftover of another account, and its people still name
// the other parties of calls and messages.
std::vector<Person> Contact::Read(const BackupDevice* device) {
  const std::vector<StoredFile> books = StoredFilesAt(device, kAddressBook);
  std::vector<Person> people = ReadOwnDatabases(device, books, [&](Database& database, const StoredFile& file) {
    AddressBook book = ReadAddressBook(database);
    for (size_t at = 0; at < book.people.size(); ++at) {
      for (const std::string& address : book.addresses[at]) directory_.Add(address, ShownName(book.people[at]));
    }
    if (&file != &books.front()) return std::vector<Person>();
    return std::move(book.people);
  });
  if (books.empty()) return people;
  pictures_ = ReadPictures(device, books.front());
  AddPictures(pictures_, people, [](Person& person) -> Person& { return person; });
  return people;
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
  // A picture kept under a person's id is that person's, so that a lost
  // copy of a live person shows what the live one does.
  Records(device);
  AddPictures(pictures_, people, [](Deleted<Person>& person) -> Person& { return person.record; });
  return WithoutLiveCopies(device, std::move(people));
}

void Contact::InsertKeys(const Person& person, plist_t dict) const {
  InsertPersonTexts(person.id, person.name.c_str(), person.texts, dict);
  InsertPlistDictString(dict, "modification_date", person.modificationDate.c_str());
  InsertPlistDictString(dict, "picture_path", person.picture.path.c_str());
  InsertPlistDictString(dict, "picture_mime_type", person.picture.mimeType.c_str());
  plist_dict_set_item(dict, "picture_size", plist_new_uint(person.picture.size));
}

const std::string* Contact::FindNameByPhone(const BackupDevice* device, const std::string& address) {
  Records(device);
  return directory_.Find(address);
}

}  // namespace current
