#include "kinds/current/MessageReaders.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <unordered_map>
#include <vector>

#include "common/AttributedBody.h"
#include "common/LocalDate.h"
#include "common/SchemaInfo.h"
#include "common/SortByMoving.h"

namespace current {
namespace {

using Conversations = std::map<std::string, Conversation>;

const std::string kNoAddress;

// Since iOS 16 many texts are kept only in the archived attributed string.
std::string MessageText(const Database::Statement& row, int textColumn, int bodyColumn) {
  std::string text = row.WholeText(textColumn);
  if (!text.empty() || row.IsNull(bodyColumn)) return text;
  return DecodeAttributedBodyText(row.Blob(bodyColumn), static_cast<size_t>(row.Bytes(bodyColumn))).value_or("");
}

void AddParticipant(Conversation& conversation, const std::string& address) {
  if (address.empty()) return;
  auto& list = conversation.participants;
  if (std::find(list.begin(), list.end(), address) == list.end()) list.push_back(address);
}

Conversation& ConversationFor(Conversations& conversations, const std::string& id) {
  Conversation& conversation = conversations[id];
  conversation.id = id;
  return conversation;
}

// iOS 6 on: chats, handles and the joins between them and the messages. A
// database without chats (or a message in none) still lists each message
// under its handle.
void ReadChats(Database& database, const SchemaInfo& schema, Conversations& conversations) {
  std::unordered_map<int64_t, std::string> handles;
  if (schema.HasTable("handle")) {
    Database::Statement rows(database, "select ROWID AS ROWID, id AS id from handle");
    const int rowId = rows.Column("ROWID");
    const int id = rows.Column("id");
    while (rows.Step()) handles[rows.Int64(rowId)] = rows.WholeText(id);
  }
  // Conversations stay where the map put them, so rows can point at them.
  std::unordered_map<int64_t, Conversation*> chats;
  if (schema.HasTable("chat")) {
    const std::string query =
        "select chat.ROWID AS ROWID, " +
        schema.SelectList("chat", {"chat_identifier", "guid", "display_name", "style"}) +
        " from chat order by chat.ROWID";
    Database::Statement rows(database, query.c_str());
    const int rowId = rows.Column("ROWID");
    const int identifier = rows.Column("chat_identifier");
    const int guid = rows.Column("guid");
    const int displayName = rows.Column("display_name");
    const int style = rows.Column("style");
    while (rows.Step()) {
      std::string id = rows.WholeText(identifier);
      if (id.empty()) id = rows.WholeText(guid);
      Conversation& conversation = ConversationFor(conversations, id);
      if (conversation.displayName.empty()) conversation.displayName = rows.WholeText(displayName);
      // Style 43 marks a group chat, 45 a chat with one other party.
      conversation.group = conversation.group || rows.Int64(style) == 43;
      chats[rows.Int64(rowId)] = &conversation;
    }
  }
  if (schema.HasTable("chat_handle_join")) {
    Database::Statement rows(database,
                             "select chat_id AS chat_id, handle_id AS handle_id from chat_handle_join order by rowid");
    const int chatId = rows.Column("chat_id");
    const int handleId = rows.Column("handle_id");
    while (rows.Step()) {
      const auto chat = chats.find(rows.Int64(chatId));
      const auto handle = handles.find(rows.Int64(handleId));
      if (chat != chats.end() && handle != handles.end()) AddParticipant(*chat->second, handle->second);
    }
  }
  // A message joined to two chats is listed once, in the first. The joins
  // are kept by message id in one sorted block: messages come in id order,
  // so each finds its chat by stepping on from the one before.
  std::vector<std::pair<int64_t, Conversation*>> chatOfMessage;
  if (schema.HasTable("chat_message_join")) {
    Database::Statement rows(
        database,
        "select message_id AS message_id, chat_id AS chat_id from chat_message_join order by chat_id, message_id");
    const int messageId = rows.Column("message_id");
    const int chatId = rows.Column("chat_id");
    while (rows.Step()) {
      const auto chat = chats.find(rows.Int64(chatId));
      if (chat != chats.end()) chatOfMessage.emplace_back(rows.Int64(messageId), chat->second);
    }
  }
  std::stable_sort(chatOfMessage.begin(), chatOfMessage.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  chatOfMessage.erase(std::unique(chatOfMessage.begin(), chatOfMessage.end(),
                                  [](const auto& a, const auto& b) { return a.first == b.first; }),
                      chatOfMessage.end());
  // Room for each chat's messages, so that they are not moved as the lists grow.
  std::unordered_map<Conversation*, size_t> counts;
  for (const auto& [message, conversation] : chatOfMessage) ++counts[conversation];
  for (const auto& [conversation, count] : counts) conversation->messages.reserve(count);
  // Galloping from where the last message stopped: a step or two for ids in
  // order, a logarithmic search when a damaged table lists them otherwise.
  auto next = chatOfMessage.cbegin();
  const auto chatOf = [&](int64_t message) -> Conversation* {
    if (next != chatOfMessage.cbegin() && std::prev(next)->first >= message) next = chatOfMessage.cbegin();
    const auto end = chatOfMessage.cend();
    size_t step = 1;
    auto below = next;
    while (static_cast<size_t>(end - next) > step && (next + step)->first < message) {
      below = next + step;
      step *= 2;
    }
    const auto last = static_cast<size_t>(end - next) > step ? next + step + 1 : end;
    next = std::lower_bound(below, last, message, [](const auto& join, int64_t id) { return join.first < id; });
    return next != end && next->first == message ? next->second : nullptr;
  };
  if (!schema.HasTable("message")) return;
  const std::string query = "select message.ROWID AS ROWID, " +
                            schema.SelectList("message", {"text", "attributedBody", "handle_id", "date",
                                                           "is_from_me", "service", "country"}) +
                            " from message order by message.ROWID";
  Database::Statement rows(database, query.c_str());
  const int rowId = rows.Column("ROWID");
  const int plainText = rows.Column("text");
  const int body = rows.Column("attributedBody");
  const int handleId = rows.Column("handle_id");
  const int when = rows.Column("date");
  const int isFromMe = rows.Column("is_from_me");
  const int serviceName = rows.Column("service");
  const int country = rows.Column("country");
  while (rows.Step()) {
    Message message;
    message.rowId = rows.Int64(rowId);
    const std::string text = MessageText(rows, plainText, body);
    const auto handle = handles.find(rows.Int64(handleId));
    const std::string& address = handle == handles.end() ? kNoAddress : handle->second;
    const LocalDate date = LocalDateOf(rows.Text(when), TimeBase::Since2001);
    message.instant = date.instant;
    message.fromMe = rows.Int64(isFromMe) != 0;
    const std::string service = rows.WholeText(serviceName);
    message.texts = PackedTexts{rows.WholeView(country), service, text, date.text,
                                message.fromMe ? std::string_view() : std::string_view(address)};
    Conversation* const chat = chatOf(message.rowId);
    const bool inChat = chat != nullptr;
    Conversation& conversation = inChat ? *chat : ConversationFor(conversations, address);
    if (!inChat) AddParticipant(conversation, address);
    conversation.messages.push_back(std::move(message));
  }
}

// iOS 5 and before: text messages in conversations of msg_group with their
// members in group_member, flags 3 for sent and 2 for received, dates in
// seconds since 1970; iMessages in the same table through the madrid
// columns, with dates since 2001 and the sent mark in bit 15 of their flags.
void ReadLegacy(Database& database, const SchemaInfo& schema, Conversations& conversations) {
  std::map<int64_t, std::vector<std::string>> members;
  if (schema.HasTable("group_member")) {
    Database::Statement rows(database,
                             "select group_id AS group_id, address AS address from group_member order by ROWID");
    const int group = rows.Column("group_id");
    const int address = rows.Column("address");
    while (rows.Step()) members[rows.Int64(group)].push_back(rows.WholeText(address));
  }
  const std::string query =
      "select message.ROWID AS ROWID, " +
      schema.SelectList("message", {"text", "madrid_attributedBody", "address", "date", "flags", "group_id",
                                     "is_madrid", "madrid_handle", "madrid_flags", "madrid_service", "country",
                                     "madrid_roomname"}) +
      " from message order by message.ROWID";
  Database::Statement rows(database, query.c_str());
  const int rowId = rows.Column("ROWID");
  const int plainText = rows.Column("text");
  const int body = rows.Column("madrid_attributedBody");
  const int addressColumn = rows.Column("address");
  const int when = rows.Column("date");
  const int flagBits = rows.Column("flags");
  const int groupId = rows.Column("group_id");
  const int isMadrid = rows.Column("is_madrid");
  const int madridHandle = rows.Column("madrid_handle");
  const int madridFlags = rows.Column("madrid_flags");
  const int serviceName = rows.Column("madrid_service");
  const int countryColumn = rows.Column("country");
  const int room = rows.Column("madrid_roomname");
  while (rows.Step()) {
    Message message;
    message.rowId = rows.Int64(rowId);
    const std::string text = MessageText(rows, plainText, body);
    const std::string country = rows.WholeText(countryColumn);
    const bool iMessage = rows.Int64(isMadrid) != 0;
    const TimeBase base = iMessage ? TimeBase::Since2001 : TimeBase::Unix;
    const LocalDate date = LocalDateOf(rows.Text(when), base);
    message.instant = date.instant;
    std::vector<std::string> parties;
    std::string id;
    std::string service;
    std::string sender;
    if (iMessage) {
      message.fromMe = (rows.Int64(madridFlags) & 0x8000) != 0;
      service = rows.WholeText(serviceName);
      const std::string handle = rows.WholeText(madridHandle);
      if (!message.fromMe) sender = handle;
      parties.push_back(handle);
      id = rows.WholeText(room).empty() ? handle : rows.WholeText(room);
    } else {
      message.fromMe = (rows.Int64(flagBits) & 1) != 0;
      service = "SMS";
      const std::string address = rows.WholeText(addressColumn);
      if (!message.fromMe) sender = address;
      const auto group = members.find(rows.Int64(groupId));
      parties = group != members.end() ? group->second : std::vector<std::string>{address};
      for (const std::string& party : parties) id += (id.empty() ? "" : ", ") + party;
    }
    Conversation& conversation = ConversationFor(conversations, id);
    for (const std::string& party : parties) AddParticipant(conversation, party);
    conversation.group = conversation.participants.size() > 1;
    message.texts = PackedTexts{country, service, text, date.text, sender};
    conversation.messages.push_back(std::move(message));
  }
}

}  // namespace

std::vector<Conversation> ReadMessageDatabase(Database& database) {
  const SchemaInfo schema(database);
  Conversations conversations;
  const bool legacy = !schema.HasTable("handle") && !schema.HasTable("chat") && schema.HasColumn("message", "flags");
  if (legacy) {
    ReadLegacy(database, schema, conversations);
  } else {
    ReadChats(database, schema, conversations);
  }
  std::vector<Conversation> ordered;
  for (auto& [id, conversation] : conversations) {
    // Text messages and iMessages of one party count their dates from
    // different epochs, so their order is settled here.
    conversation.messages = StableSortedByMoving(std::move(conversation.messages),
                                                 [](const Message& a, const Message& b) {
                                                   return a.instant.value_or(INT64_MIN) < b.instant.value_or(INT64_MIN);
                                                 });
    if (conversation.participants.empty() && !conversation.group && !id.empty()) AddParticipant(conversation, id);
    // Kept for every later request: the growth's spare room would be kept too.
    conversation.messages.shrink_to_fit();
    ordered.push_back(std::move(conversation));
  }
  return ordered;
}

}  // namespace current
