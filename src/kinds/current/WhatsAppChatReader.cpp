#include "kinds/current/WhatsAppChatReader.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>

#include "common/LocalDate.h"
#include "common/SchemaInfo.h"
#include "common/SortByMoving.h"
#include "kinds/current/WhatsAppJid.h"
#include "kinds/current/WhatsAppMessageRow.h"

namespace current {
namespace {

// The chats read so far and where each session's chat lies.
struct Chats {
  std::vector<WhatsAppChat> list;
  // Each session's rowid with its chat's position, in rowid order as read:
  // a hundred thousand messages each look theirs up.
  std::vector<std::pair<int64_t, size_t>> bySession;
  std::unordered_map<std::string, size_t> byAddress;  // the first chat of each address

  size_t Add(std::string id) {
    list.emplace_back();
    list.back().id = std::move(id);
    return list.size() - 1;
  }

  std::optional<size_t> OfSession(int64_t rowId) const {
    const auto at = std::lower_bound(bySession.begin(), bySession.end(), std::make_pair(rowId, size_t{0}));
    if (at == bySession.end() || at->first != rowId) return std::nullopt;
    return at->second;
  }
};

void AddParticipant(WhatsAppChat& chat, std::string address) {
  if (address.empty()) return;
  if (std::find(chat.participants.begin(), chat.participants.end(), address) == chat.participants.end()) {
    chat.participants.push_back(std::move(address));
  }
}

void ReadSessions(Database& database, const SchemaInfo& schema, Chats& chats) {
  if (!schema.HasTable("ZWACHATSESSION")) return;
  const std::string query = "select ZWACHATSESSION.rowid AS rowid, " +
                            schema.SelectList("ZWACHATSESSION", {"ZCONTACTJID", "ZPARTNERNAME"}) +
                            " from ZWACHATSESSION order by ZWACHATSESSION.rowid";
  Database::Statement rows(database, query.c_str());
  const int rowId = rows.Column("rowid");
  const int jid = rows.Column("ZCONTACTJID");
  const int partnerName = rows.Column("ZPARTNERNAME");
  while (rows.Step()) {
    chats.bySession.emplace_back(rows.Int64(rowId), chats.list.size());
    chats.byAddress.try_emplace(rows.WholeText(jid), chats.list.size());
    chats.list[chats.Add(rows.WholeText(jid))].partnerName = rows.WholeText(partnerName);
  }
}

void ReadMembers(Database& database, const SchemaInfo& schema, Chats& chats) {
  if (!schema.HasTable("ZWAGROUPMEMBER")) return;
  const std::string query = "select " + schema.SelectList("ZWAGROUPMEMBER", {"ZCHATSESSION", "ZMEMBERJID"}) +
                            " from ZWAGROUPMEMBER order by ZWAGROUPMEMBER.rowid";
  Database::Statement rows(database, query.c_str());
  const int session = rows.Column("ZCHATSESSION");
  const int member = rows.Column("ZMEMBERJID");
  while (rows.Step()) {
    const std::optional<size_t> chat = chats.OfSession(rows.Int64(session));
    if (chat) AddParticipant(chats.list[*chat], rows.WholeText(member));
  }
}

std::vector<std::pair<std::string, std::string>> ReadPushNames(Database& database, const SchemaInfo& schema) {
  std::vector<std::pair<std::string, std::string>> names;
  if (!schema.HasTable("ZWAPROFILEPUSHNAME")) return names;
  const std::string query = "select " + schema.SelectList("ZWAPROFILEPUSHNAME", {"ZJID", "ZPUSHNAME"}) +
                            " from ZWAPROFILEPUSHNAME order by ZWAPROFILEPUSHNAME.rowid";
  Database::Statement rows(database, query.c_str());
  const int jid = rows.Column("ZJID");
  const int pushName = rows.Column("ZPUSHNAME");
  while (rows.Step()) {
    if (!rows.WholeView(jid).empty() && !rows.WholeView(pushName).empty()) {
      names.emplace_back(rows.WholeText(jid), rows.WholeText(pushName));
    }
  }
  return names;
}

// The chat of a message: its session's, else the first of its other party.
size_t ChatOf(Chats& chats, const Database::Statement& rows, const MessageColumns& columns) {
  if (!rows.IsNull(columns.session)) {
    const std::optional<size_t> chat = chats.OfSession(rows.Int64(columns.session));
    if (chat) return *chat;
  }
  std::string party = rows.WholeText(rows.Int64(columns.fromMe) != 0 ? columns.toJid : columns.fromJid);
  const auto [at, added] = chats.byAddress.try_emplace(party, chats.list.size());
  if (!added) return at->second;
  return chats.Add(std::move(party));
}

// The messages are read in one list, their quotes resolved, then moved
// into their chats, each chat's list made once at its size: a hundred
// thousand messages would move again at every growth of two thousand lists,
// and once more to fit.
void ReadMessages(Database& database, const SchemaInfo& schema, Chats& chats, const LocateInDomain& locate) {
  if (!schema.HasTable("ZWAMESSAGE")) return;
  const std::string query = MessageQuery(schema);
  Database::Statement rows(database, query.c_str());
  const MessageColumns columns(rows);
  std::vector<WhatsAppMessage> messages;
  std::vector<MessagePlace> places;
  int64_t previous = 0;
  bool first = true;
  while (rows.Step()) {
    // A medium joined by its message may repeat the message: the first row counts.
    const int64_t rowId = rows.Int64(columns.rowId);
    if (!first && rowId == previous) continue;
    first = false;
    previous = rowId;
    const size_t chat = ChatOf(chats, rows, columns);
    messages.push_back(ReadMessageRow(rows, columns, locate));
    places.push_back({chat, std::hash<std::string_view>()(messages.back().texts.View(WhatsAppMessage::kId))});
  }
  ResolveQuotes(messages, places);
  std::vector<size_t> counts(chats.list.size());
  for (const MessagePlace& place : places) ++counts[place.chat];
  for (size_t chat = 0; chat < counts.size(); ++chat) chats.list[chat].messages.reserve(counts[chat]);
  for (size_t at = 0; at < messages.size(); ++at) chats.list[places[at].chat].messages.push_back(std::move(messages[at]));
}

// The chat's kind, whether it is a group, and its one party when it has no
// members listed.
void Settle(WhatsAppChat& chat) {
  const JidKind jidKind = KindOfJid(chat.id);
  chat.group = jidKind == JidKind::Group;
  const bool systemOnly = std::all_of(chat.messages.begin(), chat.messages.end(),
                                      [](const WhatsAppMessage& m) { return m.kind == WhatsAppKind::SystemEvent; });
  chat.chatKind = jidKind == JidKind::Status      ? WhatsAppChatKind::Status
                  : jidKind == JidKind::Broadcast ? WhatsAppChatKind::Broadcast
                  : chat.messages.empty()         ? WhatsAppChatKind::Empty
                  : systemOnly                    ? WhatsAppChatKind::SystemOnly
                  : chat.group                    ? WhatsAppChatKind::Group
                                                  : WhatsAppChatKind::Person;
  if (chat.participants.empty() && jidKind == JidKind::Person) AddParticipant(chat, chat.id);
  if (chat.group) chat.displayName = chat.partnerName;
  chat.messages =
      StableSortedByMoving(std::move(chat.messages), [](const WhatsAppMessage& a, const WhatsAppMessage& b) {
        return a.instant.value_or(INT64_MIN) < b.instant.value_or(INT64_MIN);
      });
  chat.messages.shrink_to_fit();
}

}  // namespace

ChatStorage ReadChatStorage(Database& database, const LocateInDomain& locate) {
  const SchemaInfo schema(database);
  Chats chats;
  ReadSessions(database, schema, chats);
  ReadMembers(database, schema, chats);
  ReadMessages(database, schema, chats, locate);
  for (WhatsAppChat& chat : chats.list) Settle(chat);
  return {std::move(chats.list), ReadPushNames(database, schema)};
}

}  // namespace current
