#ifndef YH_KINDS_CURRENT_WHATSAPPMESSAGEROW_H
#define YH_KINDS_CURRENT_WHATSAPPMESSAGEROW_H

#include <string>
#include <vector>

#include "common/Database.h"
#include "common/SchemaInfo.h"
#include "kinds/current/WhatsAppChat.h"
#include "kinds/current/WhatsAppChatReader.h"

namespace current {

// The query of every message with its medium and group member, in message
// order, selecting the columns the database has (NULL for the others).
std::string MessageQuery(const SchemaInfo& schema);

// The positions of MessageQuery's columns, by name.
struct MessageColumns {
  explicit MessageColumns(const Database::Statement& rows);
  int rowId, session, fromMe, date, type, text, starred, fromJid, toJid, stanzaId, member;
  int localPath, thumbnailPath, xmppThumbnailPath, title, vCard, mediaUrl, latitude, longitude, metadata;
};

// One message of a row of MessageQuery, its medium located through `locate`
// (below the domain's Message/ folder); the text it quotes is left to
// ResolveQuotes.
WhatsAppMessage ReadMessageRow(const Database::Statement& rows, const MessageColumns& columns,
                               const LocateInDomain& locate);

// Where a message read lies: its chat, and the hash of its id
// (std::hash of the text), taken while the message is at hand.
struct MessagePlace {
  size_t chat;
  size_t idHash;
};

// Gives each reply the text of the message it quotes, and its sender where
// the reply's metadata does not name one, when `messages` (in the order
// read, each at its place in `places`) hold that message; of two with the
// quoted id, the one of the earlier chat, then the one read first.
void ResolveQuotes(std::vector<WhatsAppMessage>& messages, const std::vector<MessagePlace>& places);

}  // namespace current

#endif
