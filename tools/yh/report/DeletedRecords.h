#ifndef YH_TOOL_REPORT_DELETEDRECORDS_H
#define YH_TOOL_REPORT_DELETEDRECORDS_H

#include <cstddef>
#include <string>

#include "PlistJson.h"

namespace yh {

// The messages of a conversation, an empty list given to one that has none.
Json& MessageList(Json& chat);

// A message's date text, "" when it has none.
std::string DateOf(const Json& message);

// Puts the entries of `added` among those of the list `into`, both in date
// order, so that each keeps its own order: an entry without a date first,
// as the library orders messages; on equal dates those of `into` first.
void MergeByDate(Json& into, Json added, std::string (*dateOf)(const Json&));

// The messages of a conversation that carry a deletion's keys.
size_t DeletedMessagesOf(const Json& chat);

}  // namespace yh

#endif
