#include "kinds/current/SmsAttachment.h"

#include <algorithm>
#include <cctype>

#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/PlistHelpers.h"
#include "common/SchemaInfo.h"
#include "common/TextHelpers.h"
#include "kinds/LocalDatabase.h"
#include "kinds/MediaLocator.h"

namespace current {
namespace {

// The device's home folder as message databases write it.
const char* const kHomePrefixes[] = {"~/", "/var/mobile/", "/private/var/mobile/"};

std::string BelowHome(const std::string& stored) {
  for (const char* prefix : kHomePrefixes) {
    const std::string text(prefix);
    if (stored.compare(0, text.size(), text) == 0) return stored.substr(text.size());
  }
  return stored;
}

bool IsImage(std::string mimeType) {
  std::transform(mimeType.begin(), mimeType.end(), mimeType.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return mimeType.find("image") != std::string::npos;
}

// Each attachment's ROWID with the attachment.
std::vector<std::pair<int64_t, SmsAttachment::Attachment>> ReadAttachments(Database& database) {
  const SchemaInfo schema(database);
  // Before iOS 6 attachments lived in madrid_attachment.
  const std::string table = schema.HasTable("attachment") ? "attachment" : "madrid_attachment";
  std::vector<std::pair<int64_t, SmsAttachment::Attachment>> attachments;
  if (!schema.HasTable(table)) return attachments;
  const std::string query = "select ROWID AS ROWID, " +
                            schema.SelectList(table, {"filename", "mime_type", "transfer_name", "created_date"}) +
                            " from " + table + " order by ROWID";
  Database::Statement rows(database, query.c_str());
  const int rowId = rows.Column("ROWID");
  const int fileName = rows.Column("filename");
  const int mimeType = rows.Column("mime_type");
  const int transferName = rows.Column("transfer_name");
  const int created = rows.Column("created_date");
  while (rows.Step()) {
    if (rows.IsNull(fileName) || GetEmptyStringIsNull(rows.Text(fileName)).empty()) continue;
    SmsAttachment::Attachment attachment;
    attachment.queryPath = BelowHome(GetEmptyStringIsNull(rows.Text(fileName)));
    attachment.mimeType = GetEmptyStringIsNull(rows.Text(mimeType));
    attachment.image = IsImage(attachment.mimeType);
    attachment.originalName = GetEmptyStringIsNull(rows.Text(transferName));
    attachment.date = LocalDateText(rows.Text(created), TimeBase::Since2001);
    attachments.emplace_back(rows.Int64(rowId), std::move(attachment));
  }
  return attachments;
}

// (message ROWID, attachment ROWID) of each row of message_attachment_join.
std::vector<std::pair<int64_t, int64_t>> ReadJoins(Database& database) {
  const SchemaInfo schema(database);
  std::vector<std::pair<int64_t, int64_t>> joins;
  if (!schema.HasColumn("message_attachment_join", "message_id") ||
      !schema.HasColumn("message_attachment_join", "attachment_id")) {
    return joins;
  }
  Database::Statement rows(database,
                           "select message_id AS message_id, attachment_id AS attachment_id from "
                           "message_attachment_join order by message_id, attachment_id");
  const int message = rows.Column("message_id");
  const int attachment = rows.Column("attachment_id");
  while (rows.Step()) joins.emplace_back(rows.Int64(message), rows.Int64(attachment));
  return joins;
}

}  // namespace

void SmsAttachment::Read(const BackupDevice* device) {
  read_ = true;
  size_t index = 0;
  for (const StoredFile& file : StoredFilesAt(device, "Library/SMS/sms.db")) {
    Database database = OpenStoredDatabase(device, file);
    std::map<int64_t, size_t> byRowId;
    for (auto& [rowId, attachment] : ReadAttachments(database)) {
      byRowId.emplace(rowId, attachments_.size());
      attachments_.push_back(std::move(attachment));
    }
    for (const auto& [message, attachment] : ReadJoins(database)) {
      const auto found = byRowId.find(attachment);
      if (found != byRowId.end()) ofMessage_[{index, message}].push_back(found->second);
    }
    ++index;
  }
  const MediaLocator locator(device);
  for (Attachment& attachment : attachments_) {
    const std::optional<ReadableFile> stored = locator.FindExact(attachment.queryPath);
    if (!stored) continue;
    attachment.path = stored->path;
    attachment.size = stored->size;
    attachment.present = true;
  }
}

plist_t SmsAttachment::FindContent(void* device, int /*flag*/) {
  if (!read_) Read(static_cast<const BackupDevice*>(device));
  if (attachments_.empty()) return nullptr;
  plist_t array = plist_new_array();
  for (size_t index = 0; index < attachments_.size(); ++index) plist_array_append_item(array, Dictionary(index));
  return array;
}

plist_t SmsAttachment::AttachmentsOf(const BackupDevice* device, size_t database, int64_t message) {
  if (!read_) Read(device);
  const auto found = ofMessage_.find({database, message});
  if (found == ofMessage_.end()) return nullptr;
  plist_t array = plist_new_array();
  for (size_t index : found->second) plist_array_append_item(array, Dictionary(index));
  return array;
}

// Named by its place in the list of every attachment, as the described service names them.
plist_t SmsAttachment::Dictionary(size_t index) const {
  const Attachment& attachment = attachments_[index];
  std::string name = "IMG_" + std::to_string(index + 1);
  if (const char* extension = GetFilePostfix(attachment.queryPath.c_str())) name += extension;
  plist_t dict = plist_new_dict();
  InsertPlistDictString(dict, "file_name", name.c_str());
  InsertPlistDictString(dict, "path", attachment.path.c_str());
  plist_dict_set_item(dict, "size", plist_new_uint(attachment.size));
  plist_dict_set_item(dict, "type", plist_new_uint(attachment.image ? 0 : 1));
  InsertPlistDictString(dict, "query_path", attachment.queryPath.c_str());
  plist_dict_set_item(dict, "present", plist_new_bool(attachment.present));
  InsertPlistDictString(dict, "mime_type", attachment.mimeType.c_str());
  InsertPlistDictString(dict, "original_name", attachment.originalName.c_str());
  InsertPlistDictString(dict, "date", attachment.date.c_str());
  return dict;
}

}  // namespace current
