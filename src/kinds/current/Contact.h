#ifndef YH_KINDS_CURRENT_CONTACT_H
#define YH_KINDS_CURRENT_CONTACT_H

#include <cstdint>
#include <string>
#include <vector>

#include "common/PackedTexts.h"
#include "kinds/current/ContactPictures.h"
#include "kinds/current/PhoneDirectory.h"
#include "kinds/current/StoredRecordKind.h"
#include "libYH.h"

namespace current {

// One person of an address book as the current service keeps it.
struct Person {
  int64_t id = 0;
  std::string name;
  // The PersonText texts (the birthday as a day), then each label and
  // value in row order.
  PackedTexts texts;
  std::string modificationDate;  // local date text
  ContactPicture picture;
};

// The address book as today's devices keep it, nothing lost: a structured
// value (a postal address) is one value with all its lines, every value of a
// repeated label is kept, and a value without a label is kept under the name
// of what it is. Also the directory that names the other parties of calls
// and messages, from every address book of the backup. An empty array when
// the backup holds no person. Besides the described keys, a person has
// "modification_date" and its picture's "picture_path" (a copy in the
// record's private folder, written when the people are first read),
// "picture_mime_type" and "picture_size".
class Contact : public StoredRecordKind<Person> {
 public:
  Contact() : StoredRecordKind(WhenNone::EmptyList) {}

  // The name of the person with this number or address, or NULL.
  const std::string* FindNameByPhone(const BackupDevice* device, const std::string& address);

 private:
  std::vector<Person> Read(const BackupDevice* device) override;
  std::vector<Deleted<Person>> ReadDeleted(const BackupDevice* device) override;
  void InsertKeys(const Person& person, plist_t dict) const override;

  PhoneDirectory directory_;
  std::vector<ContactPicture> pictures_;  // of the first address book's people
};

}  // namespace current

#endif
