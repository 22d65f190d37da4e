#include "Conversations.h"

#include <optional>
#include <utility>

#include "DeletedRecords.h"

namespace yh {
namespace {

const Json& MessagesIn(const Json& chat) {
  static const Json none = Json::array();
  return chat.is_object() && chat.contains("message") && chat["message"].is_array() ? chat["message"] : none;
}

Json TextOf(const Json& message, const char* key) {
  return message.is_object() && message.contains(key) && message[key].is_string() ? message[key] : Json("");
}

// [text, date] of each message.
Json TextsOf(const Json& chat) {
  Json texts = Json::array();
  for (const Json& message : MessagesIn(chat)) texts.push_back({TextOf(message, "text"), TextOf(message, "date")});
  return texts;
}

std::string DateOfTexts(const Json& entry) { return entry[1].get<std::string>(); }

std::optional<std::string> IdOf(const Json& chat) {
  if (!chat.is_object() || !chat.contains("id") || !chat["id"].is_string()) return std::nullopt;
  return chat["id"].get<std::string>();
}

}  // namespace

Conversations::Conversations(std::string prefix, std::ostream& texts, WriteData writeData, bool deleted)
    : prefix_(std::move(prefix)),
      texts_(texts, prefix_ + "message-texts"),
      writeData_(std::move(writeData)),
      deleted_(deleted) {
  texts_.Punctuation("[");
}

void Conversations::ExpectDeleted(const Json& chat) {
  if (const auto id = IdOf(chat)) deletedTexts_[*id].push_back(TextsOf(chat));
}

void Conversations::AddLive(Json chat) {
  const size_t at = count_++;
  counts_.live += MessagesIn(chat).size();
  Json texts = TextsOf(chat);
  const auto id = IdOf(chat);
  const auto joined = id ? deletedTexts_.find(*id) : deletedTexts_.end();
  if (joined != deletedTexts_.end() && heldById_.try_emplace(*id, held_.size()).second) {
    for (const Json& more : joined->second) MergeByDate(texts, more, DateOfTexts);
    held_.push_back({at, list_.size(), std::move(chat)});
    list_.push_back(nullptr);
  } else if (chat.is_object()) {
    list_.push_back(Written(at, chat));
  }
  AddTexts(at, texts);
}

void Conversations::AddDeleted(Json chat) {
  if (!chat.is_object()) return;
  Json& messages = MessageList(chat);
  counts_.deleted += messages.size();
  const auto id = IdOf(chat);
  const auto held = id ? heldById_.find(*id) : heldById_.end();
  if (held != heldById_.end()) {
    MergeByDate(MessageList(held_[held->second].chat), std::move(messages), DateOf);
    return;
  }
  const size_t at = count_++;
  list_.push_back(Written(at, chat));
  AddTexts(at, TextsOf(chat));
}

Json Conversations::Finish() {
  for (const Held& held : held_) list_[held.listed] = Written(held.at, held.chat);
  texts_.Punctuation("]");
  texts_.Finish();
  return std::move(list_);
}

void Conversations::AddTexts(size_t at, const Json& texts) {
  if (at) texts_.Punctuation(",");
  texts_.Value(texts);
}

Json Conversations::Written(size_t at, const Json& chat) {
  const Json& messages = MessagesIn(chat);
  Json summary = chat;
  summary.erase("message");
  summary["count"] = messages.size();
  if (deleted_) summary["deleted"] = DeletedMessagesOf(chat);
  summary["last"] = messages.empty() ? Json() : messages.back();
  summary["data"] = prefix_ + "thread-" + std::to_string(at + 1);
  writeData_(summary["data"], chat);
  return summary;
}

}  // namespace yh
