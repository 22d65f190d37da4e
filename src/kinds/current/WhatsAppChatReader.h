#ifndef YH_KINDS_CURRENT_WHATSAPPCHATREADER_H
#define YH_KINDS_CURRENT_WHATSAPPCHATREADER_H

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/Database.h"
#include "kinds/StoredFiles.h"
#include "kinds/current/WhatsAppChat.h"

namespace current {

// What one chat database holds: its chats in session order, each with its
// messages oldest first and its kind settled, and the names people gave
// themselves (ZWAPROFILEPUSHNAME), by address. Names from the address books
// are left to the caller.
struct ChatStorage {
  std::vector<WhatsAppChat> chats;
  std::vector<std::pair<std::string, std::string>> pushNames;
};

// The stored file at a device path of the database's own domain, if any.
using LocateInDomain = std::function<std::optional<StoredFile>(const std::string& relativePath)>;

// Reads ChatStorage.sqlite of any generation, whatever tables and columns it
// has. A message of a session the database no longer has is kept in a chat
// of its other party's address.
ChatStorage ReadChatStorage(Database& database, const LocateInDomain& locate);

}  // namespace current

#endif
