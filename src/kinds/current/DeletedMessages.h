#ifndef YH_KINDS_CURRENT_DELETEDMESSAGES_H
#define YH_KINDS_CURRENT_DELETEDMESSAGES_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/AppendMoving.h"
#include "common/SortByMoving.h"
#include "kinds/current/Deletion.h"

// What the kinds of conversations (messages, WhatsApp's chats) share for
// their deleted messages. A conversation has `id`, `messages` and
// `deletions`, the marks of its deleted messages; a message has `rowId`,
// `instant` and `deletion`: 1 + the place of its mark among its
// conversation's deletions, 0 for a live message.
namespace current {

template <class Chat>
using ChatsById = std::map<std::string, Chat>;

template <class Chat, class Message>
const Deletion& MarkOf(const Chat& chat, const Message& message) {
  return chat.deletions[message.deletion - 1];
}

// Marks every message of `chats` as deleted by `deletion`.
template <class Chat>
void MarkDeleted(std::vector<Chat>& chats, const Deletion& deletion) {
  for (Chat& chat : chats) {
    chat.deletions = {deletion};
    for (auto& message : chat.messages) message.deletion = 1;
  }
}

// Adds the messages of `found` to the conversation of the same id, with
// their marks; a conversation without messages is left out.
template <class Chat>
void MergeById(ChatsById<Chat>& into, std::vector<Chat> found) {
  for (Chat& chat : found) {
    if (chat.messages.empty()) continue;
    const auto [at, added] = into.try_emplace(chat.id);
    Chat& kept = at->second;
    if (added) {
      kept = std::move(chat);
      continue;
    }
    const auto offset = static_cast<uint32_t>(kept.deletions.size());
    for (auto& message : chat.messages) {
      if (message.deletion) message.deletion += offset;
      kept.messages.push_back(std::move(message));
    }
    AppendMoving(kept.deletions, std::move(chat.deletions));
  }
}

// Appends the conversations of `byId` to `to` in id order, each with its
// messages in date order (those without a date first).
template <class Chat>
void AppendInDateOrder(std::vector<Chat>& to, ChatsById<Chat> byId) {
  for (auto& [id, chat] : byId) {
    chat.messages = StableSortedByMoving(std::move(chat.messages), [](const auto& a, const auto& b) {
      return a.instant.value_or(INT64_MIN) < b.instant.value_or(INT64_MIN);
    });
    to.push_back(std::move(chat));
  }
}

// Leaves out of `deleted` the earlier versions whose content (`same`) the
// message of the same row shows now: the live one of `live()` (asked only
// when there are earlier versions) or, when the system keeps the row after
// a deletion, its recently deleted one. Conversations left without
// messages are dropped.
template <class Chat, class Live, class Same>
void DropUnchangedVersions(std::vector<Chat>& deleted, Live live, Same same) {
  using Message = typename decltype(Chat::messages)::value_type;
  std::unordered_map<int64_t, const Message*> now;
  for (const Chat& chat : deleted) {
    for (const Message& message : chat.messages) {
      if (MarkOf(chat, message).earlierVersion) now.emplace(message.rowId, nullptr);
    }
  }
  if (now.empty()) return;
  const auto take = [&now](const Message& message) {
    const auto at = now.find(message.rowId);
    if (at != now.end() && !at->second) at->second = &message;
  };
  for (const Chat& chat : live()) {
    for (const Message& message : chat.messages) take(message);
  }
  for (const Chat& chat : deleted) {
    for (const Message& message : chat.messages) {
      if (std::string_view(MarkOf(chat, message).from) == kRecentlyDeleted) take(message);
    }
  }
  // Decided for every message before any is moved: the pointers lead into them.
  std::vector<std::vector<bool>> unchanged;
  for (const Chat& chat : deleted) {
    std::vector<bool>& flags = unchanged.emplace_back();
    for (const Message& message : chat.messages) {
      const auto twin = now.find(message.rowId);
      flags.push_back(MarkOf(chat, message).earlierVersion && twin != now.end() && twin->second &&
                      same(*twin->second, message));
    }
  }
  std::vector<Chat> kept;
  for (size_t at = 0; at < deleted.size(); ++at) {
    Chat& chat = deleted[at];
    std::vector<Message> messages;
    for (size_t message = 0; message < chat.messages.size(); ++message) {
      if (!unchanged[at][message]) messages.push_back(std::move(chat.messages[message]));
    }
    if (messages.empty()) continue;
    chat.messages = std::move(messages);
    kept.push_back(std::move(chat));
  }
  deleted = std::move(kept);
}

}  // namespace current

#endif
