#include "DeletedRecords.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>
#include <utility>

namespace yh {
namespace {

bool IsDeleted(const Json& message) { return message.is_object() && message.contains("deleted_from"); }

std::string DateOf(const Json& message) {
  return message.is_object() && message.contains("date") && message["date"].is_string() ? message["date"].get<std::string>()
                                                                                        : std::string();
}

Json& MessagesOf(Json& chat) {
  if (!chat.contains("message") || !chat["message"].is_array()) chat["message"] = Json::array();
  return chat["message"];
}

// Both lists in date order, merged so that each keeps its own order.
void MergeByDate(Json& into, Json added) {
  Json merged = Json::array();
  std::merge(std::make_move_iterator(into.begin()), std::make_move_iterator(into.end()),
             std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()), std::back_inserter(merged),
             [](const Json& a, const Json& b) { return DateOf(a) < DateOf(b); });
  into = std::move(merged);
}

}  // namespace

size_t MixDeletedMessages(Json& chats, Json deleted) {
  if (!chats.is_array()) chats = Json::array();
  std::unordered_map<std::string, size_t> byId;
  for (size_t at = 0; at < chats.size(); ++at) {
    if (chats[at].is_object() && chats[at].contains("id") && chats[at]["id"].is_string()) {
      byId.try_emplace(chats[at]["id"].get<std::string>(), at);
    }
  }
  size_t added = 0;
  for (Json& chat : deleted) {
    if (!chat.is_object()) continue;
    Json& messages = MessagesOf(chat);
    added += messages.size();
    const auto live = chat.contains("id") && chat["id"].is_string() ? byId.find(chat["id"].get<std::string>())
                                                                     : byId.end();
    if (live == byId.end()) {
      chats.push_back(std::move(chat));
    } else {
      MergeByDate(MessagesOf(chats[live->second]), std::move(messages));
    }
  }
  return added;
}

size_t AppendDeletedRecords(Json& records, Json deleted) {
  if (!records.is_array()) records = Json::array();
  size_t added = 0;
  for (Json& record : deleted) {
    records.push_back(std::move(record));
    ++added;
  }
  return added;
}

size_t DeletedMessagesOf(const Json& chat) {
  if (!chat.is_object() || !chat.contains("message") || !chat["message"].is_array()) return 0;
  const Json& messages = chat["message"];
  return static_cast<size_t>(std::count_if(messages.begin(), messages.end(), IsDeleted));
}

}  // namespace yh
