#include "kinds/current/Voicemail.h"

#include "common/ColumnHelpers.h"
#include "common/DurationText.h"
#include "common/LocalDate.h"
#include "common/PlistHelpers.h"
#include "common/SchemaInfo.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char* const kVoicemailFolder = "Library/Voicemail/";

// Bits of voicemail.flags: 1 once heard, 8 once moved to the deleted list
// (public parsers take 11 and 75, which both hold it, as deleted).
const int64_t kHeardFlag = 1;
const int64_t kDeletedFlag = 8;

std::vector<VoiceMessage> ReadMessages(Database& database) {
  const SchemaInfo schema(database);
  std::vector<VoiceMessage> messages;
  if (!schema.HasTable("voicemail")) return messages;
  const std::string query = "select voicemail.ROWID AS ROWID, " +
                            schema.SelectList("voicemail", {"sender", "date", "duration", "flags", "trashed_date"}) +
                            " from voicemail order by ROWID";
  Database::Statement rows(database, query.c_str());
  const int rowId = rows.Column("ROWID");
  const int sender = rows.Column("sender");
  const int when = rows.Column("date");
  const int duration = rows.Column("duration");
  const int flagBits = rows.Column("flags");
  const int trashed = rows.Column("trashed_date");
  while (rows.Step()) {
    VoiceMessage message;
    message.fileName = std::to_string(rows.Int64(rowId)) + ".amr";
    message.address = GetEmptyStringIsNull(rows.Text(sender));
    LocalDate date = LocalDateOf(rows.Text(when), TimeBase::Unix);
    message.date = std::move(date.text);
    message.instant = date.instant;
    message.duration = DurationText(rows.Text(duration));
    const int64_t flags = rows.Int64(flagBits);
    message.heard = (flags & kHeardFlag) != 0;
    message.deleted = (flags & kDeletedFlag) != 0 || rows.Int64(trashed) != 0;
    messages.push_back(std::move(message));
  }
  return messages;
}

}  // namespace

// Newest first; voicemail without a date last.
std::vector<VoiceMessage> Voicemail::Read(const BackupDevice* device) {
  std::vector<VoiceMessage> messages = ReadOwnDatabases(
      device, StoredFilesAt(device, std::string(kVoicemailFolder) + "voicemail.db"),
      [device](Database& database, const StoredFile& file) {
        std::vector<VoiceMessage> read = ReadMessages(database);
        for (VoiceMessage& message : read) {
          const std::optional<StoredFile> stored =
              StoredFileIn(device, file.domain, kVoicemailFolder + message.fileName);
          if (!stored || !stored->regular) continue;
          message.path = stored->path;
          message.size = stored->size;
          message.present = true;
        }
        return read;
      });
  messages = NewestFirst(std::move(messages), &VoiceMessage::instant);
  for (VoiceMessage& message : messages) {
    if (const std::string* name = contacts_.FindNameByPhone(device, message.address)) message.name = *name;
  }
  return messages;
}

void Voicemail::InsertKeys(const VoiceMessage& message, plist_t dict) const {
  InsertPlistDictString(dict, "name", message.name.c_str());
  InsertPlistDictString(dict, "address", message.address.c_str());
  InsertPlistDictString(dict, "date", message.date.c_str());
  InsertPlistDictString(dict, "duration", message.duration.c_str());
  plist_dict_set_item(dict, "heard", plist_new_bool(message.heard));
  plist_dict_set_item(dict, "deleted", plist_new_bool(message.deleted));
  InsertPlistDictString(dict, "path", message.path.c_str());
  plist_dict_set_item(dict, "size", plist_new_uint(message.size));
  plist_dict_set_item(dict, "present", plist_new_bool(message.present));
  InsertPlistDictString(dict, "file_name", message.fileName.c_str());
}

}  // namespace current
