#include "DeletedRecords.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace yh {
namespace {

bool IsDeleted(const Json& message) { return message.is_object() && message.contains("deleted_from"); }

}  // namespace

Json& MessageList(Json& chat) {
  if (!chat.contains("message") || !chat["message"].is_array()) chat["message"] = Json::array();
  return chat["message"];
}

std::string DateOf(const Json& message) {
  return message.is_object() && message.contains("date") && message["date"].is_string() ? message["date"].get<std::string>()
                                                                                        : std::string();
}

void MergeByDate(Json& into, Json added, std::string (*dateOf)(const Json&)) {
  Json merged = Json::array();
  std::merge(std::make_move_iterator(into.begin()), std::make_move_iterator(into.end()),
             std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()), std::back_inserter(merged),
             [dateOf](const Json& a, const Json& b) { return dateOf(a) < dateOf(b); });
  into = std::move(merged);
}

size_t DeletedMessagesOf(const Json& chat) {
  if (!chat.is_object() || !chat.contains("message") || !chat["message"].is_array()) return 0;
  const Json& messages = chat["message"];
  return static_cast<size_t>(std::count_if(messages.begin(), messages.end(), IsDeleted));
}

}  // namespace yh
