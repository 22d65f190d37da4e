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
#include "kinds/current/MessagePart.h"

namespace current {
namespace {

using Conversations = std::map<std::string, Conversation>;

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

// A message's read or delivery instant as local date text; "" for none (0).
std::string DateText(const Database::Statement& row, int column) {
  return LocalDateText(row.Text(column), TimeBase::Since2001);
}

// A handle: its address and the country the phone placed it in.
struct Handle {
  std::string id;
  std::string country;
};

const Handle kNoHandle;

// iOS 6 on: chats, handles and the joins between them and the messages. A
// database without chats (or a message in none) still lists each message
// under its handle.
void ReadChats(Database& database, const SchemaInfo& schema, MessageSelection selection, Conversations& conversations) {
  std::unordered_map<int64_t, Handle> handles;
  if (schema.HasTable("handle")) {
    const std::string query = "select ROWID AS ROWID, " + schema.SelectList("handle", {"id", "country"}) + " from handle";
    Database::Statement rows(database, query.c_str());
    const int rowId = rows.Column("ROWID");
    const int id = rows.Column("id");
    const int country = rows.Column("country");
    while (rows.Step()) handles[rows.Int64(rowId)] = Handle{rows.WholeText(id), rows.WholeText(country)};
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
      if (chat != chats.end() && handle != handles.end()) AddParticipant(*chat->second, handle->second.id);
    }
  }
  // A message joined to two chats is listed once, in the first. The joins
  // are kept by message id in one sorted block: messages come in id order,
  // so each finds its chat by stepping on from the one before. Recently
  // deleted messages are joined to theirs through the table that keeps them,
  // with the instant of their deletion.
  const char* const keeper = "chat_recoverable_message_join";
  std::vector<std::pair<int64_t, Conversation*>> chatOfMessage;
  const char* const joins = selection == MessageSelection::Live ? "chat_message_join" : keeper;
  if (schema.HasTable(joins)) {
    const std::string query = std::string("select message_id AS message_id, chat_id AS chat_id from ") + joins +
                              " order by chat_id, message_id";
    Database::Statement rows(database, query.c_str());
    const int messageId = rows.Column("message_id");
    const int chatId = rows.Column("chat_id");
    while (rows.Step()) {
      const auto chat = chats.find(rows.Int64(chatId));
      if (chat != chats.end()) chatOfMessage.emplace_back(rows.Int64(messageId), chat->second);
    }
  }
  // The messages the keeper holds, by id, with their deletion's local time.
  std::vector<std::pair<int64_t, std::string>> kept;
  if (schema.HasTable(keeper)) {
    const std::string query = "select message_id AS message_id, " + schema.SelectList(keeper, {"delete_date"}) +
                              " from " + keeper + " order by message_id";
    Database::Statement rows(database, query.c_str());
    const int messageId = rows.Column("message_id");
    const int deleteDate = rows.Column("delete_date");
    while (rows.Step()) {
      const bool marks = selection == MessageSelection::RecentlyDeleted;
      kept.emplace_back(rows.Int64(messageId), marks ? LocalDateText(rows.Text(deleteDate), TimeBase::Since2001) : "");
    }
  }
  const auto keptAt = [&kept](int64_t message) {
    const auto at = std::lower_bound(kept.cbegin(), kept.cend(), message,
                                     [](const auto& entry, int64_t id) { return entry.first < id; });
    return at != kept.cend() && at->first == message ? at : kept.cend();
  };
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
                                                           "is_from_me", "service", "country", "date_read",
                                                           "date_delivered"}) +
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
  const int dateRead = rows.Column("date_read");
  const int dateDelivered = rows.Column("date_delivered");
  while (rows.Step()) {
    const int64_t id = rows.Int64(rowId);
    Conversation* const chat = chatOf(id);
    const auto keeps = keptAt(id);
    const bool recentlyDeleted = keeps != kept.cend() && (selection == MessageSelection::RecentlyDeleted || !chat);
    if (recentlyDeleted != (selection == MessageSelection::RecentlyDeleted)) continue;
    Message message;
    message.rowId = id;
    const std::string text = MessageText(rows, plainText, body);
    const auto handle = handles.find(rows.Int64(handleId));
    const Handle& party = handle == handles.end() ? kNoHandle : handle->second;
    const std::string& address = party.id;
    const LocalDate date = LocalDateOf(rows.Text(when), TimeBase::Since2001);
    message.instant = date.instant;
    message.fromMe = rows.Int64(isFromMe) != 0;
    const std::string service = rows.WholeText(serviceName);
    // Older databases leave the message's own country empty; its handle's holds it.
    const std::string_view ownCountry = rows.WholeView(country);
    message.texts = PackedTexts{ownCountry.empty() ? std::string_view(party.country) : ownCountry,
                                service,
                                text,
                                date.text,
                                message.fromMe ? std::string_view() : std::string_view(address),
                                DateText(rows, dateRead),
                                DateText(rows, dateDelivered)};
    const bool inChat = chat != nullptr;
    Conversation& conversation = inChat ? *chat : ConversationFor(conversations, address);
    if (!inChat) AddParticipant(conversation, address);
    if (recentlyDeleted) {
      conversation.deletions.push_back(Deletion{kRecentlyDeleted, keeps->second, false});
      message.deletion = static_cast<uint32_t>(conversation.deletions.size());
    }
    conversation.messages.push_back(std::move(message));
  }
}

// The text parts of iOS 5 multimedia messages (msg_pieces), by message, in
// part order, one line each.
std::unordered_map<int64_t, std::string> ReadTextPieces(Database& database, const SchemaInfo& schema) {
  std::unordered_map<int64_t, std::string> texts;
  if (!schema.HasTable("msg_pieces")) return texts;
  const std::string query = "select " + schema.SelectList("msg_pieces", {"message_id", "part_id", "content_type", "data"}) +
                            " from msg_pieces order by message_id, part_id, ROWID";
  Database::Statement rows(database, query.c_str());
  const int message = rows.Column("message_id");
  const int type = rows.Column("content_type");
  const int data = rows.Column("data");
  while (rows.Step()) {
    if (MessagePartOf(rows.WholeText(type)) != MessagePart::Text) continue;
    std::string& text = texts[rows.Int64(message)];
    text += (text.empty() ? "" : "\n") + rows.WholeText(data);
  }
  return texts;
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
                                     "madrid_roomname", "madrid_date_read", "madrid_date_delivered"}) +
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
  const int dateRead = rows.Column("madrid_date_read");
  const int dateDelivered = rows.Column("madrid_date_delivered");
  const std::unordered_map<int64_t, std::string> pieces = ReadTextPieces(database, schema);
  while (rows.Step()) {
    Message message;
    message.rowId = rows.Int64(rowId);
    std::string text = MessageText(rows, plainText, body);
    // A multimedia message keeps its text in its parts.
    if (const auto parts = pieces.find(message.rowId); text.empty() && parts != pieces.end()) text = parts->second;
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
    // Only iMessages record when they were read and delivered.
    message.texts = PackedTexts{country,
                                service,
                                text,
                                date.text,
                                sender,
                                iMessage ? DateText(rows, dateRead) : std::string(),
                                iMessage ? DateText(rows, dateDelivered) : std::string()};
    conversation.messages.push_back(std::move(message));
  }
}

}  // namespace

std::vector<Conversation> ReadMessageDatabase(Database& database, MessageSelection selection) {
  const SchemaInfo schema(database);
  Conversations conversations;
  const bool legacy = !schema.HasTable("handle") && !schema.HasTable("chat") && schema.HasColumn("message", "flags");
  if (legacy) {
    // Nothing of that generation is kept after a deletion.
    if (selection == MessageSelection::Live) ReadLegacy(database, schema, conversations);
  } else {
    ReadChats(database, schema, selection, conversations);
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
