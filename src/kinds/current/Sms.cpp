#include "kinds/current/Sms.h"

#include "common/PlistHelpers.h"
#include "kinds/current/MessageReaders.h"
#include "kinds/current/StoredDatabases.h"

namespace current {

const std::string* Sms::NameOf(const BackupDevice* device, const std::string& address, NameCache& cache) {
  const auto [at, added] = cache.try_emplace(address, nullptr);
  if (added) at->second = contacts_.FindNameByPhone(device, address);
  return at->second;
}

void Sms::Name(const BackupDevice* device, Conversation& conversation, NameCache& cache) {
  std::string everyone;
  for (const std::string& address : conversation.participants) {
    const std::string* name = NameOf(device, address, cache);
    conversation.participantNames.push_back(name ? *name : std::string());
    everyone += (everyone.empty() ? "" : ", ") + (name ? *name : address);
  }
  if (conversation.group) {
    conversation.another = everyone;
    conversation.phone.clear();
    for (const std::string& address : conversation.participants) {
      conversation.phone += (conversation.phone.empty() ? "" : ", ") + address;
    }
  } else {
    conversation.phone = conversation.participants.empty() ? conversation.id : conversation.participants.front();
    conversation.another = conversation.participantNames.empty() ? std::string() : conversation.participantNames.front();
  }
  for (Message& message : conversation.messages) {
    const std::string_view sender = message.texts.View(Message::kSender);
    if (sender.empty()) continue;
    if (const std::string* name = NameOf(device, std::string(sender), cache)) message.senderName = *name;
  }
}

std::vector<Conversation> Sms::Read(const BackupDevice* device) {
  size_t database = 0;
  std::vector<Conversation> conversations =
      ReadStoredDatabases(device, StoredFilesAt(device, "Library/SMS/sms.db"), [&database](Database& opened) {
        std::vector<Conversation> read = ReadMessageDatabase(opened);
        for (Conversation& conversation : read) conversation.database = database;
        ++database;
        return read;
      });
  NameCache names;
  for (Conversation& conversation : conversations) {
    Name(device, conversation, names);
    for (Message& message : conversation.messages) {
      message.attachments = attachments_.Of(device, conversation.database, message.rowId);
    }
  }
  return conversations;
}

void Sms::InsertKeys(const Conversation& conversation, plist_t dict) const {
  InsertPlistDictString(dict, "id", conversation.id.c_str());
  InsertPlistDictString(dict, "phone", conversation.phone.c_str());
  InsertPlistDictString(dict, "another", conversation.another.c_str());
  if (!conversation.messages.empty()) {
    plist_t messages = plist_new_array();
    for (const Message& message : conversation.messages) {
      plist_t item = plist_new_dict();
      InsertPackedTexts(item, message.texts,
                        {{"country", Message::kCountry},
                         {"service", Message::kService},
                         {"text", Message::kText},
                         {"date", Message::kDate}});
      plist_dict_set_item(item, "type", plist_new_uint(message.fromMe ? 1 : 0));
      InsertPlistDictString(item, "sender", message.texts.AsCString(Message::kSender));
      InsertPlistDictString(item, "sender_name", message.senderName.c_str());
      if (!message.attachments.empty()) {
        plist_t attachments = plist_new_array();
        for (uint32_t place : message.attachments) plist_array_append_item(attachments, attachments_.Dictionary(place));
        plist_dict_set_item(item, "attachments", attachments);
      }
      plist_array_append_item(messages, item);
    }
    plist_dict_set_item(dict, "message", messages);
  }
  plist_t participants = plist_new_array();
  for (size_t at = 0; at < conversation.participants.size(); ++at) {
    plist_t participant = plist_new_dict();
    InsertPlistDictString(participant, "address", conversation.participants[at].c_str());
    InsertPlistDictString(participant, "name", conversation.participantNames[at].c_str());
    plist_array_append_item(participants, participant);
  }
  plist_dict_set_item(dict, "participants", participants);
  plist_dict_set_item(dict, "group", plist_new_bool(conversation.group));
  InsertPlistDictString(dict, "display_name", conversation.displayName.c_str());
}

}  // namespace current
