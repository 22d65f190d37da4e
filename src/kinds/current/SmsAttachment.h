#ifndef YH_KINDS_CURRENT_SMSATTACHMENT_H
#define YH_KINDS_CURRENT_SMSATTACHMENT_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "kinds/Kind.h"
#include "libYH.h"

namespace current {

// Every attachment of every message database, located exactly by its path
// below the device's home folder whatever prefix the database wrote ("~/" or
// "/var/mobile/"). An attachment whose file the backup lacks is listed too,
// with an empty path and size 0. Besides the described keys: "present",
// "mime_type", "original_name" and "date".
class SmsAttachment : public Kind {
 public:
  // NULL when no message database names an attachment.
  plist_t FindContent(void* device, int flag) override;

  // The attachments of one message (by its ROWID in the `database`-th
  // message database, as StoredFilesAt lists them) as the dictionaries
  // FindContent gives; NULL when it has none.
  plist_t AttachmentsOf(const BackupDevice* device, size_t database, int64_t message);

  struct Attachment {
    std::string queryPath;
    std::string path;
    uint64_t size = 0;
    bool image = false;
    bool present = false;
    std::string mimeType;
    std::string originalName;
    std::string date;
  };

 private:
  void Read(const BackupDevice* device);
  plist_t Dictionary(size_t index) const;

  bool read_ = false;
  std::vector<Attachment> attachments_;
  // Indexes into attachments_ of each message's attachments, by database and
  // message ROWID (message_attachment_join).
  std::map<std::pair<size_t, int64_t>, std::vector<size_t>> ofMessage_;
};

}  // namespace current

#endif
