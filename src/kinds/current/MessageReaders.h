#ifndef YH_KINDS_CURRENT_MESSAGEREADERS_H
#define YH_KINDS_CURRENT_MESSAGEREADERS_H

#include <vector>

#include "common/Database.h"
#include "kinds/current/Sms.h"

namespace current {

// The conversations of one message database of any generation, ordered by
// their id, each with its messages in date order. Names are left empty.
std::vector<Conversation> ReadMessageDatabase(Database& database);

}  // namespace current

#endif
