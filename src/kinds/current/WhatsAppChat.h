#ifndef YH_KINDS_CURRENT_WHATSAPPCHAT_H
#define YH_KINDS_CURRENT_WHATSAPPCHAT_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/PackedTexts.h"
#include "kinds/current/Deletion.h"
#include "kinds/current/SmsAttachment.h"

namespace current {

// What a WhatsApp message is, from its stored type (ZMESSAGETYPE).
enum class WhatsAppKind : uint8_t {
  Text,
  Image,
  Video,
  Audio,
  VoiceNote,
  Document,
  ContactCard,
  Location,
  Sticker,
  Link,
  SystemEvent,
  Deleted,
  Other
};

// The medium of a message and where the backup keeps it: the original
// file (its `date` the message's), and its thumbnail apart, never one for
// the other.
struct WhatsAppAttachment {
  Attachment file;  // its query path is "" when the chat database names none
  std::string thumbnailQueryPath;
  std::string thumbnailPath;
};

// What a message of a rarer kind adds to its texts.
struct WhatsAppDetails {
  std::optional<double> latitude;
  std::optional<double> longitude;
  std::vector<std::string> contactNumbers;
  std::optional<WhatsAppAttachment> attachment;
};

// One message, a hundred thousand at a time: its texts share one block.
struct WhatsAppMessage {
  enum Text : size_t {
    kText,
    kDate,
    kSender,  // the sender's address, empty for the owner
    kId,      // the stanza id, by which replies name it
    kCaption,
    kUrl,
    kContactName,
    kQuotedId,
    kQuotedSender,
    kQuotedText
  };
  PackedTexts texts;
  int64_t rowId = 0;
  std::optional<int64_t> instant;  // seconds since 1970, for the order
  WhatsAppKind kind = WhatsAppKind::Text;
  bool fromMe = false;
  bool starred = false;
  bool quotes = false;
  // For a deleted message, 1 + the place of its mark among its chat's
  // deletions; 0 for a live one (in the padding: no cost).
  uint32_t deletion = 0;
  const std::string* senderName = nullptr;  // kept by the kind; NULL when no book names the sender
  std::unique_ptr<WhatsAppDetails> details;
};

// What a chat is, kept apart so that nothing is mixed into a person's chat.
enum class WhatsAppChatKind : uint8_t { Person, Group, Broadcast, Status, Empty, SystemOnly };

// One chat session with its messages, oldest first.
struct WhatsAppChat {
  std::string id;  // the chat's address (JID)
  std::string phone;
  std::string another;
  std::string partnerName;  // as the chat database stores it
  std::string displayName;
  WhatsAppChatKind chatKind = WhatsAppChatKind::Person;
  bool group = false;
  std::vector<std::string> participants;  // addresses (JIDs)
  std::vector<std::string> participantNames;
  std::vector<WhatsAppMessage> messages;
  std::vector<Deletion> deletions;  // the marks of its deleted messages
};

}  // namespace current

#endif
