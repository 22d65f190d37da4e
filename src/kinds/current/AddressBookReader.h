#ifndef YH_KINDS_CURRENT_ADDRESSBOOKREADER_H
#define YH_KINDS_CURRENT_ADDRESSBOOKREADER_H

#include <vector>

#include "common/Database.h"
#include "kinds/current/Contact.h"

namespace current {

// The people of one address-book database, by ascending id, with their
// values as the current service shows them.
std::vector<Contact::Person> ReadAddressBook(Database& database);

}  // namespace current

#endif
