#ifndef YH_TOOL_REPORT_DELETEDRECORDS_H
#define YH_TOOL_REPORT_DELETEDRECORDS_H

#include <cstddef>

#include "PlistJson.h"

namespace yh {

// Puts the messages of `deleted` conversations among those of the live
// `chats`: each into the live conversation of the same id, in date order (a
// message without a date first, as the library orders them; on equal dates
// the live message first), the others as conversations of their own after
// the live ones. Returns the number of messages added.
size_t MixDeletedMessages(Json& chats, Json deleted);

// Appends the `deleted` records after the live `records`; returns their number.
size_t AppendDeletedRecords(Json& records, Json deleted);

// The messages of a conversation that carry a deletion's keys.
size_t DeletedMessagesOf(const Json& chat);

}  // namespace yh

#endif
