#include "kinds/current/WhatsAppCalls.h"

#include "common/PlistHelpers.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/StoredDatabases.h"
#include "kinds/current/WhatsAppCallReader.h"
#include "kinds/current/WhatsAppFiles.h"
#include "kinds/current/WhatsAppJid.h"
#include "kinds/current/WhatsAppParticipants.h"

namespace current {

// A group call is named by every participant's name or, where the books
// have none, number.
std::vector<WhatsAppCall> WhatsAppCalls::Read(const BackupDevice* device) {
  std::vector<WhatsAppCall> calls =
      NewestFirst(ReadOwnDatabases(device, WhatsAppFilesAt(device, "CallHistory.sqlite"), ReadWhatsAppCallHistory),
                  &WhatsAppCall::instant);
  for (WhatsAppCall& call : calls) {
    std::string names;
    std::string addresses;
    for (const std::string& participant : call.participants) {
      const std::string* name = directory_.NameOf(device, participant);
      const std::string address = AddressOfJid(participant);
      call.participantNames.push_back(name ? *name : std::string());
      const std::string shown = name ? *name : call.group ? address : std::string();
      names += (names.empty() ? "" : ", ") + shown;
      addresses += (addresses.empty() ? "" : ", ") + address;
    }
    call.texts.Replace(kCallName, names);
    call.texts.Replace(kCallAddress, addresses);
  }
  return calls;
}

void WhatsAppCalls::InsertKeys(const WhatsAppCall& call, plist_t dict) const {
  InsertCallTexts(call.texts, dict);
  plist_dict_set_item(dict, "answered", plist_new_bool(call.answered));
  InsertPlistDictString(dict, "service", call.texts.AsCString(WhatsAppCall::kService));
  InsertParticipants(call.participants, call.participantNames, dict);
  plist_dict_set_item(dict, "group", plist_new_bool(call.group));
}

}  // namespace current
