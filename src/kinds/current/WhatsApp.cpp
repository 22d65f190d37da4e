#include "kinds/current/WhatsApp.h"

#include "common/PlistHelpers.h"
#include "kinds/current/DeletedMessages.h"
#include "kinds/current/LostRows.h"
#include "kinds/current/StoredDatabases.h"
#include "kinds/current/WhatsAppChatReader.h"
#include "kinds/current/WhatsAppFiles.h"
#include "kinds/current/WhatsAppJid.h"
#include "kinds/current/WhatsAppMessageKind.h"
#include "kinds/current/WhatsAppParticipants.h"

namespace current {
namespace {

// How many messages ahead their texts are asked for while a chat's are gone
// through.
constexpr size_t kAhead = 8;

void InsertAttachment(const WhatsAppAttachment& attachment, plist_t message) {
  plist_t item = plist_new_dict();
  InsertAttachmentKeys(attachment.file, item);
  InsertPlistDictString(item, "thumbnail_query_path", attachment.thumbnailQueryPath.c_str());
  InsertPlistDictString(item, "thumbnail_path", attachment.thumbnailPath.c_str());
  plist_t list = plist_new_array();
  plist_array_append_item(list, item);
  plist_dict_set_item(message, "attachments", list);
}

// Inserts the address of `jid`, through `scratch`: a hundred thousand
// messages name their senders, and a string each would be made and freed.
void InsertAddress(plist_t dict, const char* key, std::string_view jid, std::string& scratch) {
  scratch.assign(AddressViewOfJid(jid));
  InsertPlistDictString(dict, key, scratch.c_str());
}

void InsertText(plist_t dict, const char* key, const PackedTexts& texts, size_t at) {
  if (!texts.View(at).empty()) InsertPlistDictString(dict, key, texts.AsCString(at));
}

// The keys only some kinds have, each where the message has it.
void InsertDetails(const WhatsAppMessage& message, plist_t item, std::string& scratch) {
  InsertText(item, "caption", message.texts, WhatsAppMessage::kCaption);
  InsertText(item, "url", message.texts, WhatsAppMessage::kUrl);
  if (message.kind == WhatsAppKind::ContactCard) {
    InsertPlistDictString(item, "contact_name", message.texts.AsCString(WhatsAppMessage::kContactName));
    plist_t numbers = plist_new_array();
    if (message.details) {
      for (const std::string& number : message.details->contactNumbers) AppendPlistArrayString(numbers, number.c_str());
    }
    plist_dict_set_item(item, "contact_numbers", numbers);
  }
  if (message.details && message.details->latitude && message.details->longitude) {
    plist_dict_set_item(item, "latitude", plist_new_real(*message.details->latitude));
    plist_dict_set_item(item, "longitude", plist_new_real(*message.details->longitude));
  }
  if (message.quotes) {
    InsertPlistDictString(item, "quoted_id", message.texts.AsCString(WhatsAppMessage::kQuotedId));
    InsertAddress(item, "quoted_sender", message.texts.View(WhatsAppMessage::kQuotedSender), scratch);
    InsertPlistDictString(item, "quoted_text", message.texts.AsCString(WhatsAppMessage::kQuotedText));
  }
  if (message.details && message.details->attachment) {
    InsertAttachment(*message.details->attachment, item);
  }
}

// A deleted message's `deletion` is its mark, after the keys every message
// has. `scratch` is reused from message to message.
plist_t MessageDict(const WhatsAppMessage& message, std::string& scratch, const Deletion* deletion = nullptr) {
  plist_t item = plist_new_dict();
  InsertPlistDictString(item, "country", "");
  InsertPlistDictString(item, "service", "WhatsApp");
  InsertPlistDictString(item, "text", message.texts.AsCString(WhatsAppMessage::kText));
  InsertPlistDictString(item, "date", message.texts.AsCString(WhatsAppMessage::kDate));
  plist_dict_set_item(item, "type", plist_new_uint(message.fromMe ? 1 : 0));
  InsertAddress(item, "sender", message.texts.View(WhatsAppMessage::kSender), scratch);
  InsertPlistDictString(item, "sender_name", message.senderName ? message.senderName->c_str() : "");
  InsertPlistDictString(item, "id", message.texts.AsCString(WhatsAppMessage::kId));
  InsertPlistDictString(item, "kind", WhatsAppKindName(message.kind));
  plist_dict_set_item(item, "starred", plist_new_bool(message.starred));
  if (deletion) InsertDeletion(*deletion, item);
  InsertDetails(message, item, scratch);
  return item;
}

// Two versions of a message show the same when their keys are the same.
bool SameContent(const WhatsAppMessage& a, const WhatsAppMessage& b) {
  std::string bytes[2];
  std::string scratch;
  const WhatsAppMessage* versions[] = {&a, &b};
  for (size_t at = 0; at < 2; ++at) {
    plist_t dict = MessageDict(*versions[at], scratch);
    char* binary = nullptr;
    uint32_t length = 0;
    plist_to_bin(dict, &binary, &length);
    bytes[at].assign(binary ? binary : "", binary ? length : 0);
    plist_to_bin_free(binary);
    plist_free(dict);
  }
  return bytes[0] == bytes[1];
}

const char kChatDatabase[] = "ChatStorage.sqlite";

// A deleted message is a row of ZWAMESSAGE no longer live; the sessions,
// members and media around it, live or recovered, place it.
const LostRowsOf kLostMessages{{"ZWAMESSAGE"}, {}, false, "ZSTANZAID"};

// Media are looked for in the database's own domain.
LocateInDomain LocatorOf(const BackupDevice* device, const StoredFile& file) {
  return [device, &file](const std::string& relativePath) { return StoredFileIn(device, file.domain, relativePath); };
}

}  // namespace

const std::string* WhatsApp::NameOf(const BackupDevice* device, std::string_view jid, FoundNames& found) {
  const auto [at, added] = found.try_emplace(jid, nullptr);
  if (!added) return at->second;
  const std::string address(jid);
  for (const auto* names : {&partnerNames_, &pushNames_}) {
    const auto named = names->find(address);
    if (named != names->end()) return at->second = &named->second;
  }
  return at->second = directory_.NameOf(device, address);
}

// `another` falls back on the number of a person's address.
void WhatsApp::Name(const BackupDevice* device, WhatsAppChat& chat, FoundNames& found) {
  for (const std::string& participant : chat.participants) {
    const std::string* name = NameOf(device, participant, found);
    chat.participantNames.push_back(name ? *name : std::string());
  }
  if (chat.group) {
    for (const std::string& participant : chat.participants) {
      chat.phone += (chat.phone.empty() ? "" : ", ") + AddressOfJid(participant);
    }
  } else {
    chat.phone = PhoneOfJid(chat.id);
  }
  const std::string* name = chat.partnerName.empty() ? NameOf(device, chat.id, found) : &chat.partnerName;
  chat.another = name ? *name : PhoneOfJid(chat.id);
  // A chat's messages come mostly from one sender at a time.
  std::string_view last;
  const std::string* lastName = nullptr;
  for (size_t at = 0; at < chat.messages.size(); ++at) {
    WhatsAppMessage& message = chat.messages[at];
    if (at + kAhead < chat.messages.size()) chat.messages[at + kAhead].texts.Prefetch();
    // The owner's messages name no sender.
    if (message.fromMe) continue;
    const std::string_view sender = message.texts.View(WhatsAppMessage::kSender);
    if (sender.empty()) continue;
    if (sender != last) {
      last = sender;
      lastName = NameOf(device, sender, found);
    }
    message.senderName = lastName;
  }
}

std::vector<WhatsAppChat> WhatsApp::Read(const BackupDevice* device) {
  std::vector<WhatsAppChat> chats = ReadOwnDatabases(
      device, WhatsAppFilesAt(device, kChatDatabase), [&](Database& database, const StoredFile& file) {
        ChatStorage storage = ReadChatStorage(database, LocatorOf(device, file));
        for (auto& [jid, name] : storage.pushNames) pushNames_.try_emplace(std::move(jid), std::move(name));
        for (const WhatsAppChat& chat : storage.chats) {
          if (!chat.group && !chat.partnerName.empty()) partnerNames_.try_emplace(chat.id, chat.partnerName);
        }
        return std::move(storage.chats);
      });
  FoundNames found;
  for (WhatsAppChat& chat : chats) Name(device, chat, found);
  return chats;
}

// Per chat database, the messages of each layer of lost rows, merged into
// chats by id with their messages in date order; named as live chats are.
std::vector<Deleted<WhatsAppChat>> WhatsApp::ReadDeleted(const BackupDevice* device) {
  std::vector<WhatsAppChat> found;
  for (const StoredFile& file : WhatsAppFilesAt(device, kChatDatabase)) {
    ChatsById<WhatsAppChat> chats;
    const LocateInDomain locate = LocatorOf(device, file);
    ForEachLostLayer(device, file, kLostMessages,
                     [&](Database& database, const Deletion& deletion) {
                       std::vector<WhatsAppChat> layer = ReadChatStorage(database, locate).chats;
                       MarkDeleted(layer, deletion);
                       MergeById(chats, std::move(layer));
                     });
    AppendInDateOrder(found, std::move(chats));
  }
  if (found.empty()) return {};
  // The names the live chats give are known once they are read; a partner
  // named only by a deleted chat session names its messages too.
  const std::vector<WhatsAppChat>& live = Records(device);
  for (const WhatsAppChat& chat : found) {
    if (!chat.group && !chat.partnerName.empty()) partnerNames_.try_emplace(chat.id, chat.partnerName);
  }
  FoundNames names;
  for (WhatsAppChat& chat : found) Name(device, chat, names);
  DropUnchangedVersions(found, [&live]() -> const std::vector<WhatsAppChat>& { return live; }, SameContent);
  std::vector<Deleted<WhatsAppChat>> deleted;
  for (WhatsAppChat& chat : found) {
    if (chat.id.empty()) chat.id = "unknown";
    deleted.push_back({std::move(chat), Deletion{}});
  }
  return deleted;
}

void WhatsApp::InsertKeys(const WhatsAppChat& chat, plist_t dict) const {
  InsertPlistDictString(dict, "id", chat.id.c_str());
  InsertPlistDictString(dict, "phone", chat.phone.c_str());
  InsertPlistDictString(dict, "another", chat.another.c_str());
  plist_t messages = plist_new_array();
  std::string scratch;
  for (size_t at = 0; at < chat.messages.size(); ++at) {
    if (at + kAhead < chat.messages.size()) chat.messages[at + kAhead].texts.Prefetch();
    const WhatsAppMessage& message = chat.messages[at];
    plist_array_append_item(messages,
                            MessageDict(message, scratch, message.deletion ? &MarkOf(chat, message) : nullptr));
  }
  plist_dict_set_item(dict, "message", messages);
  InsertParticipants(chat.participants, chat.participantNames, dict);
  plist_dict_set_item(dict, "group", plist_new_bool(chat.group));
  InsertPlistDictString(dict, "display_name", chat.displayName.c_str());
  InsertPlistDictString(dict, "chat_kind", WhatsAppChatKindName(chat.chatKind));
}

}  // namespace current
