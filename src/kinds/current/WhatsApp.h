#ifndef YH_KINDS_CURRENT_WHATSAPP_H
#define YH_KINDS_CURRENT_WHATSAPP_H

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kinds/current/StoredRecordKind.h"
#include "kinds/current/WhatsAppChat.h"
#include "kinds/current/WhatsAppDirectory.h"

namespace current {

// WhatsApp's chats (ChatStorage.sqlite of WhatsApp's and WhatsApp
// Business's shared app group), in the layout of the messages answer, so a
// host that shows messages shows them unchanged. Per chat: "id" (its
// address), "phone", "another", "message", "participants", "group",
// "display_name" and "chat_kind"; per message the messages answer's keys
// ("service" is "WhatsApp") and "id", "kind", "starred", then what its kind
// holds ("caption", "url", "contact_name" and "contact_numbers",
// "latitude" and "longitude", "quoted_id", "quoted_sender" and
// "quoted_text", "attachments" in the attachments answer's layout with the
// thumbnail apart). NULL when the backup holds no chat database. Its
// deleted records are the ZWAMESSAGE rows no longer live, each message
// marked, in the chat its session (live or recovered) gives, else in its
// party's, else under "unknown".
class WhatsApp : public StoredRecordKind<WhatsAppChat> {
 public:
  explicit WhatsApp(WhatsAppDirectory& directory) : StoredRecordKind(WhenNone::Null), directory_(directory) {}

 private:
  std::vector<WhatsAppChat> Read(const BackupDevice* device) override;
  std::vector<Deleted<WhatsAppChat>> ReadDeleted(const BackupDevice* device) override;
  void InsertKeys(const WhatsAppChat& chat, plist_t dict) const override;
  // Each deleted message carries its own mark.
  void InsertDeletionKeys(const Deletion& /*deletion*/, plist_t /*dict*/) const override {}

  // The name of an address: its one-to-one chat's partner name, else the
  // name its owner gave themselves, else an address book's; NULL for none.
  // Each address is looked up once: `found` keeps every answer given, keyed
  // by views of the chats' own texts, which stay where they are while read.
  using FoundNames = std::unordered_map<std::string_view, const std::string*>;
  const std::string* NameOf(const BackupDevice* device, std::string_view jid, FoundNames& found);
  void Name(const BackupDevice* device, WhatsAppChat& chat, FoundNames& found);

  WhatsAppDirectory& directory_;
  // Names kept for the record's life: messages point at them.
  std::unordered_map<std::string, std::string> partnerNames_;
  std::unordered_map<std::string, std::string> pushNames_;
};

}  // namespace current

#endif
