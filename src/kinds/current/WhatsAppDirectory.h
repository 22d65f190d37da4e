#ifndef YH_KINDS_CURRENT_WHATSAPPDIRECTORY_H
#define YH_KINDS_CURRENT_WHATSAPPDIRECTORY_H

#include <string>
#include <unordered_map>

#include "kinds/current/Contact.h"
#include "libYH.h"

namespace current {

// The names the address books give WhatsApp addresses, for chats and calls:
// the device's address book by the address's number, then WhatsApp's own
// copy of it (ContactsV2.sqlite, by address), read once per backup record.
class WhatsAppDirectory {
 public:
  explicit WhatsAppDirectory(Contact& contacts) : contacts_(contacts) {}

  // The name, or NULL when neither book names the address.
  const std::string* NameOf(const BackupDevice* device, const std::string& jid);

 private:
  Contact& contacts_;
  bool read_ = false;
  std::unordered_map<std::string, std::string> names_;         // WhatsApp's copy, by address
  std::unordered_map<std::string, const std::string*> found_;  // every answer given, by address
};

}  // namespace current

#endif
