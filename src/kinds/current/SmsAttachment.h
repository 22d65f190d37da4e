#ifndef YH_KINDS_CURRENT_SMSATTACHMENT_H
#define YH_KINDS_CURRENT_SMSATTACHMENT_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "kinds/current/StoredRecordKind.h"
#include "libYH.h"

namespace current {

// One attachment of a message database and its stored file.
struct Attachment {
  std::string fileName;  // "IMG_" + its place among every attachment + the extension
  std::string queryPath;
  std::string path;
  uint64_t size = 0;
  bool image = false;
  bool present = false;
  std::string mimeType;
  std::string originalName;
  std::string date;
  std::string part;  // an iOS 5 multimedia part: its stored name's stem, "<message>-<part>"
  size_t database = 0;            // its message database, in StoredFilesAt's order
  std::vector<int64_t> messages;  // the ROWIDs of the messages that carry it
};

// Inserts an attachment's keys in the attachments answer's order.
void InsertAttachmentKeys(const Attachment& attachment, plist_t dict);

// Every attachment of every message database, located exactly by its path
// below the device's home folder whatever prefix the database wrote ("~/" or
// "/var/mobile/"). An attachment whose file the backup lacks is listed too,
// with an empty path and size 0, and so is one without a file name (its
// query path empty). Besides the described keys: "present",
// "mime_type", "original_name" and "date". NULL when no message database
// names an attachment.
class SmsAttachment : public StoredRecordKind<Attachment> {
 public:
  SmsAttachment() : StoredRecordKind(WhenNone::Null) {}

  // The places, among every attachment, of those the message with ROWID
  // `message` of the `database`-th message database carries
  // (message_attachment_join); reads the attachments on the first call.
  std::vector<uint32_t> Of(const BackupDevice* device, size_t database, int64_t message);
  // The dictionary FindContent gives for the attachment at a place Of gave.
  plist_t Dictionary(uint32_t place) const;

 private:
  std::vector<Attachment> Read(const BackupDevice* device) override;
  void InsertKeys(const Attachment& attachment, plist_t dict) const override;

  const std::vector<Attachment>* read_ = nullptr;
  std::map<std::pair<size_t, int64_t>, std::vector<uint32_t>> ofMessage_;
};

}  // namespace current

#endif
