#include "kinds/current/SmsAttachment.h"

#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/PlistHelpers.h"
#include "common/SchemaInfo.h"
#include "common/TextHelpers.h"
#include "kinds/MediaLocator.h"
#include "kinds/current/StoredDatabases.h"

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

bool IsImage(const std::string& mimeType) { return AsciiLower(mimeType).find("image") != std::string::npos; }

// The ROWIDs of the messages that carry each attachment, by its ROWID.
std::map<int64_t, std::vector<int64_t>> ReadCarriers(Database& database, const SchemaInfo& schema) {
  std::map<int64_t, std::vector<int64_t>> carriers;
  if (!schema.HasColumn("message_attachment_join", "message_id") ||
      !schema.HasColumn("message_attachment_join", "attachment_id")) {
    return carriers;
  }
  Database::Statement rows(database,
                           "select message_id AS message_id, attachment_id AS attachment_id from "
                           "message_attachment_join order by attachment_id, message_id");
  const int message = rows.Column("message_id");
  const int attachment = rows.Column("attachment_id");
  while (rows.Step()) carriers[rows.Int64(attachment)].push_back(rows.Int64(message));
  return carriers;
}

// The attachments of the `database`-th message database.
std::vector<Attachment> ReadAttachments(Database& database, size_t databaseIndex) {
  const SchemaInfo schema(database);
  // Before iOS 6 attachments lived in madrid_attachment.
  const std::string table = schema.HasTable("attachment") ? "attachment" : "madrid_attachment";
  std::vector<Attachment> attachments;
  if (!schema.HasTable(table)) return attachments;
  std::map<int64_t, std::vector<int64_t>> carriers = ReadCarriers(database, schema);
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
    Attachment attachment;
    attachment.queryPath = BelowHome(GetEmptyStringIsNull(rows.Text(fileName)));
    attachment.mimeType = GetEmptyStringIsNull(rows.Text(mimeType));
    attachment.image = IsImage(attachment.mimeType);
    attachment.originalName = GetEmptyStringIsNull(rows.Text(transferName));
    attachment.date = LocalDateText(rows.Text(created), TimeBase::Since2001);
    attachment.database = databaseIndex;
    const auto carried = carriers.find(rows.Int64(rowId));
    if (carried != carriers.end()) attachment.messages = std::move(carried->second);
    attachments.push_back(std::move(attachment));
  }
  return attachments;
}

}  // namespace

std::vector<Attachment> SmsAttachment::Read(const BackupDevice* device) {
  size_t database = 0;
  std::vector<Attachment> attachments = ReadStoredDatabases(
      device, StoredFilesAt(device, "Library/SMS/sms.db"),
      [&database](Database& opened) { return ReadAttachments(opened, database++); });
  const MediaLocator locator(device);
  size_t position = 0;
  for (Attachment& attachment : attachments) {
    // One not downloaded, or kept in iCloud, has no file name: its
    // extension is that of the name it was sent under.
    const std::string& named = attachment.queryPath.empty() ? attachment.originalName : attachment.queryPath;
    attachment.fileName = "IMG_" + std::to_string(++position);
    if (const char* extension = GetFilePostfix(named.c_str())) attachment.fileName += extension;
    if (attachment.queryPath.empty()) continue;
    const std::optional<ReadableFile> stored = locator.FindExact(attachment.queryPath);
    if (!stored) continue;
    attachment.path = stored->path;
    attachment.size = stored->size;
    attachment.present = true;
  }
  return attachments;
}

std::vector<uint32_t> SmsAttachment::Of(const BackupDevice* device, size_t database, int64_t message) {
  if (!read_) {
    read_ = &Records(device);
    for (uint32_t place = 0; place < read_->size(); ++place) {
      const Attachment& attachment = (*read_)[place];
      for (int64_t carrier : attachment.messages) ofMessage_[{attachment.database, carrier}].push_back(place);
    }
  }
  const auto found = ofMessage_.find({database, message});
  return found == ofMessage_.end() ? std::vector<uint32_t>() : found->second;
}

plist_t SmsAttachment::Dictionary(uint32_t place) const {
  plist_t dict = plist_new_dict();
  InsertKeys((*read_)[place], dict);
  return dict;
}

void InsertAttachmentKeys(const Attachment& attachment, plist_t dict) {
  InsertPlistDictString(dict, "file_name", attachment.fileName.c_str());
  InsertPlistDictString(dict, "path", attachment.path.c_str());
  plist_dict_set_item(dict, "size", plist_new_uint(attachment.size));
  plist_dict_set_item(dict, "type", plist_new_uint(attachment.image ? 0 : 1));
  InsertPlistDictString(dict, "query_path", attachment.queryPath.c_str());
  plist_dict_set_item(dict, "present", plist_new_bool(attachment.present));
  InsertPlistDictString(dict, "mime_type", attachment.mimeType.c_str());
  InsertPlistDictString(dict, "original_name", attachment.originalName.c_str());
  InsertPlistDictString(dict, "date", attachment.date.c_str());
}

void SmsAttachment::InsertKeys(const Attachment& attachment, plist_t dict) const {
  InsertAttachmentKeys(attachment, dict);
}

}  // namespace current
