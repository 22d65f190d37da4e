#include "kinds/current/WhatsAppParticipants.h"

#include "common/PlistHelpers.h"
#include "kinds/current/WhatsAppJid.h"

namespace current {

void InsertParticipants(const std::vector<std::string>& jids, const std::vector<std::string>& names, plist_t dict) {
  plist_t participants = plist_new_array();
  for (size_t at = 0; at < jids.size() && at < names.size(); ++at) {
    plist_t participant = plist_new_dict();
    InsertPlistDictString(participant, "address", AddressOfJid(jids[at]).c_str());
    InsertPlistDictString(participant, "name", names[at].c_str());
    plist_array_append_item(participants, participant);
  }
  plist_dict_set_item(dict, "participants", participants);
}

}  // namespace current
