#ifndef YH_KINDS_CURRENT_ADDRESSBOOKREADER_H
#define YH_KINDS_CURRENT_ADDRESSBOOKREADER_H

#include <string>
#include <vector>

#include "common/Database.h"
#include "kinds/current/Contact.h"

namespace current {

// The people of one address-book database, by ascending id, with their
// values as the current service shows them.
struct AddressBook {
  std::vector<Person> people;
  // Each person's phone numbers and e-mail addresses among those values, in
  // row order: what the directory needs, not kept after.
  std::vector<std::vector<std::string>> addresses;
};
AddressBook ReadAddressBook(Database& database);

}  // namespace current

#endif
