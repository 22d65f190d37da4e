#include "kinds/current/Sms.h"

#include <string_view>
#include <unordered_map>

#include "common/PlistHelpers.h"
#include "kinds/current/DeletedMessages.h"
#include "kinds/current/LostRows.h"
#include "kinds/current/MessageReaders.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char kMessageDatabase[] = "Library/SMS/sms.db";

// A deleted message is a row of the message table no longer live; the
// chats, handles and joins around it, live or recovered, place it.
const LostRowsOf kLostMessages{{"message"},
                               {},
                               false,
                               "guid",
                               {{"chat_message_join", "message_id"},
                                {"chat_recoverable_message_join", "message_id"},
                                {"message_attachment_join", "message_id"},
                                {"msg_pieces", "message_id"},
                                {"madrid_attachment", "message_id"}},
                               {"deleted_messages", "sync_deleted_messages", "sync_deleted_chats",
                                "sync_deleted_attachments"}};

bool SameContent(const Message& a, const Message& b) {
  for (size_t text : {Message::kCountry, Message::kService, Message::kText, Message::kDate, Message::kSender,
                      Message::kDateRead, Message::kDateDelivered}) {
    if (a.texts.View(text) != b.texts.View(text)) return false;
  }
  return a.fromMe == b.fromMe;
}

}  // namespace

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
      ReadOwnDatabases(device, StoredFilesAt(device, kMessageDatabase), [&database](Database& opened) {
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

// Per message database: those the system keeps after a deletion, then
// those of each layer of lost rows, merged into conversations by id with
// their messages in date order.
std::vector<Deleted<Conversation>> Sms::ReadDeleted(const BackupDevice* device) {
  std::vector<Conversation> found;
  for (const StoredFile& file : StoredFilesAt(device, kMessageDatabase)) {
    ChatsById<Conversation> conversations;
    MergeById(conversations, ReadStoredDatabases(device, std::vector<StoredFile>{file}, [](Database& database) {
                return ReadMessageDatabase(database, MessageSelection::RecentlyDeleted);
              }));
    ForEachLostLayer(device, file, kLostMessages,
                     [&conversations](Database& database, const Deletion& deletion) {
                       std::vector<Conversation> layer = ReadMessageDatabase(database);
                       MarkDeleted(layer, deletion);
                       MergeById(conversations, std::move(layer));
                     });
    AppendInDateOrder(found, std::move(conversations));
  }
  DropUnchangedVersions(found, [&]() -> const std::vector<Conversation>& { return Records(device); }, SameContent);
  NameCache names;
  std::vector<Deleted<Conversation>> deleted;
  for (Conversation& conversation : found) {
    Name(device, conversation, names);
    if (conversation.id.empty()) conversation.id = "unknown";
    deleted.push_back({std::move(conversation), Deletion{}});
  }
  return deleted;
}

void Sms::InsertKeys(const Conversation& conversation, plist_t dict) const {
  InsertPlistDictString(dict, "id", conversation.id.c_str());
  InsertPlistDictString(dict, "phone", conversation.phone.c_str());
  InsertPlistDictString(dict, "another", conversation.another.c_str());
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
    InsertPlistDictString(item, "date_read", message.texts.AsCString(Message::kDateRead));
    InsertPlistDictString(item, "date_delivered", message.texts.AsCString(Message::kDateDelivered));
    if (message.deletion) InsertDeletion(MarkOf(conversation, message), item);
    if (!message.attachments.empty()) {
      plist_t attachments = plist_new_array();
      for (uint32_t place : message.attachments) plist_array_append_item(attachments, attachments_.Dictionary(place));
      plist_dict_set_item(item, "attachments", attachments);
    }
    plist_array_append_item(messages, item);
  }
  plist_dict_set_item(dict, "message", messages);
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
