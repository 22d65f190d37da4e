#ifndef YH_KINDS_CURRENT_SMS_H
#define YH_KINDS_CURRENT_SMS_H

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/PackedTexts.h"
#include "kinds/current/Contact.h"
#include "kinds/current/Deletion.h"
#include "kinds/current/SmsAttachment.h"
#include "kinds/current/StoredRecordKind.h"

namespace current {

// One message as the current service keeps it, a hundred thousand at a
// time: the texts read from the row share one block.
struct Message {
  enum Text { kCountry, kService, kText, kDate, kSender, kDateRead, kDateDelivered };
  int64_t rowId = 0;
  std::optional<int64_t> instant;  // seconds since 1970, for the order
  PackedTexts texts;  // the sender is its address, empty for the owner
  bool fromMe = false;
  // For a deleted message, 1 + the position of its mark among its
  // conversation's deletions; 0 for a live one (in the padding: no cost).
  uint32_t deletion = 0;
  std::string senderName;
  std::vector<uint32_t> attachments;  // places among every attachment (SmsAttachment::Of)
};

// One conversation with its messages in date order.
struct Conversation {
  size_t database = 0;  // its message database, in StoredFilesAt's order
  std::string id;
  std::string phone;
  std::string another;
  std::string displayName;
  bool group = false;
  std::vector<std::string> participants;  // addresses
  std::vector<std::string> participantNames;
  std::vector<Message> messages;
  std::vector<Deletion> deletions;  // the marks of its deleted messages
};

// Every conversation a message database holds, from iOS 5 to 18, group
// chats included, each message once and in date order, with its true date
// and its text (from the archived attributed string where the text column
// is empty). Besides the described keys: per conversation "participants"
// (each with "address" and "name"), "group" and "display_name"; per message
// "sender" and "sender_name" (empty for the owner's own messages),
// "date_read" and "date_delivered" ("" when the database has no such date)
// and, for a message that has any, "attachments": the dictionaries the
// attachments kind gives for them. A conversation without messages has an
// empty "message" array. An empty array when no message database holds a
// conversation. Messages the owner deleted are left out of it; they are the
// kind's deleted records, each message marked, in the conversation it was in
// (found through the joins that are left or recovered), else under its
// handle, else under "unknown".
class Sms : public StoredRecordKind<Conversation> {
 public:
  Sms(Contact& contacts, SmsAttachment& attachments)
      : StoredRecordKind(WhenNone::EmptyList), contacts_(contacts), attachments_(attachments) {}

 private:
  std::vector<Conversation> Read(const BackupDevice* device) override;
  std::vector<Deleted<Conversation>> ReadDeleted(const BackupDevice* device) override;
  void InsertKeys(const Conversation& conversation, plist_t dict) const override;
  // Each deleted message carries its own mark.
  void InsertDeletionKeys(const Deletion& /*deletion*/, plist_t /*dict*/) const override {}

  // Names by address, asked of the address book once per address: one
  // long conversation names its sender thousands of times.
  using NameCache = std::unordered_map<std::string, const std::string*>;
  const std::string* NameOf(const BackupDevice* device, const std::string& address, NameCache& cache);
  void Name(const BackupDevice* device, Conversation& conversation, NameCache& cache);

  Contact& contacts_;
  SmsAttachment& attachments_;
};

}  // namespace current

#endif
