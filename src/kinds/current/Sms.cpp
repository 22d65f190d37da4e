#include "kinds/current/Sms.h"

#include "common/PlistHelpers.h"
#include "kinds/LocalDatabase.h"
#include "kinds/current/MessageReaders.h"

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

void Sms::Read(const BackupDevice* device) {
  read_ = true;
  NameCache names;
  size_t index = 0;
  for (const StoredFile& file : StoredFilesAt(device, "Library/SMS/sms.db")) {
    Database database = OpenStoredDatabase(device, file);
    for (Conversation& conversation : ReadMessageDatabase(database)) {
      Name(device, conversation, names);
      conversation.database = index;
      conversations_.push_back(std::move(conversation));
    }
    ++index;
  }
}

plist_t Sms::FindContent(void* device, int /*flag*/) {
  if (!read_) Read(static_cast<const BackupDevice*>(device));
  plist_t array = plist_new_array();
  for (const Conversation& conversation : conversations_) {
    plist_t dict = plist_new_dict();
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
        if (plist_t attachments = attachments_.AttachmentsOf(static_cast<const BackupDevice*>(device),
                                                             conversation.database, message.rowId)) {
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
    plist_array_append_item(array, dict);
  }
  return array;
}

}  // namespace current
