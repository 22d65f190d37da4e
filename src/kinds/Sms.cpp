#include "kinds/Sms.h"

#include <cctype>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/PlistHelpers.h"
#include "kinds/ColumnDate.h"
#include "kinds/Contact.h"
#include "kinds/SourceFiles.h"

namespace {

const SourcePaths kSmsSource{"Library/SMS/sms.db", "Library/SMS/sms.db"};

// Current schema: chats, their handles and the handles' messages.
const char kMessageQuery[] =
    "select distinct c.chat_identifier,m.country,m.service,m.text,m.date,m.is_from_me from chat c, message m "
    ",handle h where c.chat_identifier = h.id and m.handle_id = h.rowid order by m.date";
// Older schema, whose iMessage columns begin with "madrid_".
const char kMadridMessageQuery[] =
    "select mc.rowid,m.country,m.madrid_service,m.madrid_handle,m.text,m.date,m.madrid_flags from message "
    "m,madrid_chat mc where m.madrid_handle=mc.chat_identifier order by m.date";

// madrid_flags of a received message; every other value counts as sent.
const int32_t kMadridReceived = 12289;

// An address without "-" and white space. Brackets, dots and letters stay, so
// "(555) 123-4567" keeps its brackets and finds no contact: intended.
std::string CleanPhone(const char* address) {
  std::string phone;
  for (const char c : GetEmptyStringIsNull(address)) {
    if (c != '-' && !std::isspace(static_cast<unsigned char>(c))) phone += c;
  }
  return phone;
}

// The chats of one database as its rows arrive, with an index by
// identifier: rows of every chat come interleaved by date, and finding a
// chat again should cost no text of its own and touch as little memory as
// may be (a hundred thousand rows ask it). The index is open addressing on
// the identifier's hash, kept at most half full.
struct ChatRows {
  Sms::ChatMap& chats;
  std::vector<std::pair<size_t, Chat*>> slots = std::vector<std::pair<size_t, Chat*>>(64);
  size_t used = 0;
};

// The chat kept under `key`, created (with no phone yet) on its first row.
Chat& ChatFor(void* context, const char* key) {
  ChatRows& rows = *static_cast<ChatRows*>(context);
  const std::string_view id = key ? key : "";
  const size_t hash = std::hash<std::string_view>()(id);
  size_t slot = hash & (rows.slots.size() - 1);
  for (; rows.slots[slot].second; slot = (slot + 1) & (rows.slots.size() - 1)) {
    if (rows.slots[slot].first == hash && rows.slots[slot].second->id == id) return *rows.slots[slot].second;
  }
  std::unique_ptr<Chat>& chat = rows.chats[std::string(id)];
  if (!chat) {
    chat.reset(new Chat);
    chat->id = std::string(id);
  }
  Chat& found = *chat;
  rows.slots[slot] = {hash, &found};
  if (2 * ++rows.used > rows.slots.size()) {
    std::vector<std::pair<size_t, Chat*>> grown(2 * rows.slots.size());
    for (const auto& [each, kept] : rows.slots) {
      if (!kept) continue;
      size_t to = each & (grown.size() - 1);
      while (grown[to].second) to = (to + 1) & (grown.size() - 1);
      grown[to] = {each, kept};
    }
    rows.slots.swap(grown);
  }
  return found;
}

// Columns: chat identifier, country, service, text, date, is-from-me.
int MessageCallback(void* rows, int /*columns*/, char** values, char** /*names*/) {
  Chat& chat = ChatFor(rows, values[0]);
  // The chat identifier is the other party's address.
  if (chat.phone.empty()) chat.phone = CleanPhone(values[0]);
  const std::string date = DateText2001(values[4]);
  chat.messages.push_back({{GetEmptyViewIsNull(values[1]), GetEmptyViewIsNull(values[2]), GetEmptyViewIsNull(values[3]), date},
                           GetZeroIntIsNull(values[5])});
  return 0;
}

// Columns: madrid_chat row id, country, service, handle, text, date, flags.
int MessageMadridCallback(void* rows, int /*columns*/, char** values, char** /*names*/) {
  Chat& chat = ChatFor(rows, values[0]);
  // The first message's handle names the other party.
  if (chat.phone.empty()) chat.phone = CleanPhone(values[3]);
  const std::string date = DateText2001(values[5]);
  chat.messages.push_back({{GetEmptyViewIsNull(values[1]), GetEmptyViewIsNull(values[2]), GetEmptyViewIsNull(values[4]), date},
                           GetZeroIntIsNull(values[6]) == kMadridReceived ? 0 : 1});
  return 0;
}

// One conversation with its messages.
plist_t ChatDict(const Chat& chat) {
  plist_t dict = plist_new_dict();
  InsertPlistDictString(dict, "id", chat.id.c_str());
  InsertPlistDictString(dict, "phone", chat.phone.c_str());
  InsertPlistDictString(dict, "another", chat.another.c_str());
  if (chat.messages.empty()) return dict;
  plist_t messages = plist_new_array();
  plist_dict_set_item(dict, "message", messages);
  for (const Chat::Message& message : chat.messages) {
    plist_t item = plist_new_dict();
    plist_array_append_item(messages, item);
    InsertPackedTexts(item, message.texts,
                      {{"country", Chat::Message::kCountry},
                       {"service", Chat::Message::kService},
                       {"text", Chat::Message::kText},
                       {"date", Chat::Message::kDate}});
    plist_dict_set_item(item, "type", plist_new_uint(static_cast<uint64_t>(static_cast<int64_t>(message.type))));
  }
  return dict;
}

}  // namespace

bool Sms::HandContent(void* device, int /*flag*/, RecordSink& sink) {
  for (const std::string& path : SourceFiles(static_cast<BackupDevice*>(device), kSmsSource)) {
    if (sink.Stopped()) break;
    // Design decision: each database's chats live only until they are
    // converted. Nothing reads them afterwards, and keeping them would only
    // grow with every request.
    ChatMap chats;
    AddSmsList(device, chats, path, sink);
  }
  return true;
}

int Sms::AddSmsList(void* device, ChatMap& chats, const std::string& path, RecordSink& sink) {
  {
    // Closed before the answer is made, so that its page cache is free for
    // the answer's nodes.
    Database db(path);
    if (!db.IsOpen()) return -1;
    // The older query runs only when the current one fails (no chat or handle
    // table), not when it finds nothing; rows a failing query delivered stay.
    ChatRows rows{chats};
    if (!db.Exec(kMessageQuery, MessageCallback, &rows)) db.Exec(kMadridMessageQuery, MessageMadridCallback, &rows);
  }
  for (auto& entry : chats) {
    Chat& chat = *entry.second;
    VqCheckAlive(&chat);
    if (!contact_) continue;
    VqCheckAlive(contact_);
    const char* name = contact_->FindNameByPhone(device, chat.phone.c_str());
    if (name && chat.another.empty()) chat.another = name;
  }
  ConvertToPlist(chats, sink);
  return 0;
}

void Sms::ConvertToPlist(ChatMap& chats, RecordSink& sink) {
  for (auto& entry : chats) {
    const std::unique_ptr<Chat> converted = std::move(entry.second);
    VqCheckAlive(converted.get());
    if (!sink.Put(ChatDict(*converted))) return;
  }
}
