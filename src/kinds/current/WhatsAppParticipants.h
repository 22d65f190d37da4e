#ifndef YH_KINDS_CURRENT_WHATSAPPPARTICIPANTS_H
#define YH_KINDS_CURRENT_WHATSAPPPARTICIPANTS_H

#include <plist/plist.h>

#include <string>
#include <vector>

namespace current {

// Inserts "participants": one dictionary per address (JID) with the
// "address" it is shown as and the "name" at the same place of `names`.
void InsertParticipants(const std::vector<std::string>& jids, const std::vector<std::string>& names, plist_t dict);

}  // namespace current

#endif
