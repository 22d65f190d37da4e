#ifndef YH_KINDS_CURRENT_VOICEMAIL_H
#define YH_KINDS_CURRENT_VOICEMAIL_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kinds/current/Contact.h"
#include "kinds/current/StoredRecordKind.h"

namespace current {

// One voicemail and its audio file.
struct VoiceMessage {
  std::string fileName;
  std::string name;
  std::string address;
  std::optional<int64_t> instant;  // seconds since 1970, for the order
  std::string date;
  std::string duration;
  bool heard = false;
  bool deleted = false;
  std::string path;
  uint64_t size = 0;
  bool present = false;
};

// Voicemail of the phone app, newest first, each with its caller's name from
// the address book and its audio file (Library/Voicemail/<ROWID>.amr beside
// the database), located exactly. A voicemail whose file the backup lacks is
// listed too, with an empty path and size 0. Keys: "name", "address",
// "date", "duration", "heard", "deleted", "path", "size", "present" and
// "file_name" (the audio file's name on the device, for copies). NULL when
// the backup holds no voicemail.
class Voicemail : public StoredRecordKind<VoiceMessage> {
 public:
  explicit Voicemail(Contact& contacts) : StoredRecordKind(WhenNone::Null), contacts_(contacts) {}

 private:
  std::vector<VoiceMessage> Read(const BackupDevice* device) override;
  void InsertKeys(const VoiceMessage& message, plist_t dict) const override;

  Contact& contacts_;
};

}  // namespace current

#endif
