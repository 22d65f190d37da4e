#ifndef YH_KINDS_CURRENT_MESSAGEREADERS_H
#define YH_KINDS_CURRENT_MESSAGEREADERS_H

#include <vector>

#include "common/Database.h"
#include "kinds/current/Sms.h"

namespace current {

// Which messages a reading gives.
enum class MessageSelection {
  // The messages the device shows: not those that since iOS 16 are only
  // joined to their chat through chat_recoverable_message_join.
  Live,
  // Only those, each marked recently deleted with its delete_date.
  RecentlyDeleted,
};

// The conversations of one message database of any generation, ordered by
// their id, each with its messages in date order. Names are left empty.
std::vector<Conversation> ReadMessageDatabase(Database& database, MessageSelection selection = MessageSelection::Live);

}  // namespace current

#endif
