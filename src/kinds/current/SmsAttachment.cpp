#include "kinds/current/SmsAttachment.h"

#include <algorithm>

#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/PlistHelpers.h"
#include "common/SchemaInfo.h"
#include "common/TextHelpers.h"
#include "kinds/MediaLocator.h"
#include "kinds/current/MessagePart.h"
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

const char kPartsFolder[] = "Library/SMS/Parts/";

// The ROWIDs of the messages that carry each attachment, by its ROWID:
// through the join table, or before iOS 6 the attachment's own message_id.
std::map<int64_t, std::vector<int64_t>> ReadCarriers(Database& database, const SchemaInfo& schema) {
  std::map<int64_t, std::vector<int64_t>> carriers;
  if (schema.HasColumn("madrid_attachment", "message_id") && !schema.HasTable("attachment")) {
    Database::Statement rows(database, "select ROWID AS ROWID, message_id AS message_id from madrid_attachment");
    const int attachment = rows.Column("ROWID");
    const int message = rows.Column("message_id");
    while (rows.Step()) {
      if (!rows.IsNull(message)) carriers[rows.Int64(attachment)].push_back(rows.Int64(message));
    }
    return carriers;
  }
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

// The files of iOS 5 multimedia messages (msg_pieces rows other than their
// text and layout), stored as Library/SMS/Parts/xx/yy/<message>-<part>.<ext>.
void ReadParts(Database& database, const SchemaInfo& schema, size_t databaseIndex, std::vector<Attachment>& attachments) {
  if (!schema.HasTable("msg_pieces")) return;
  const std::string query =
      "select " + schema.SelectList("msg_pieces", {"message_id", "part_id", "content_type", "content_loc"}) +
      " from msg_pieces order by message_id, part_id, ROWID";
  Database::Statement rows(database, query.c_str());
  const int message = rows.Column("message_id");
  const int part = rows.Column("part_id");
  const int type = rows.Column("content_type");
  const int location = rows.Column("content_loc");
  while (rows.Step()) {
    const std::string mimeType = rows.WholeText(type);
    if (MessagePartOf(mimeType) != MessagePart::File) continue;
    Attachment attachment;
    attachment.part = std::to_string(rows.Int64(message)) + "-" + std::to_string(rows.Int64(part));
    attachment.mimeType = mimeType;
    attachment.image = IsImage(mimeType);
    attachment.originalName = rows.WholeText(location);
    attachment.database = databaseIndex;
    attachment.messages.push_back(rows.Int64(message));
    attachments.push_back(std::move(attachment));
  }
}

// Each stored part's path by its name's stem ("<message>-<part>").
std::map<std::string, std::string> StoredParts(const MediaLocator& locator) {
  std::map<std::string, std::string> parts;
  for (std::string& path : locator.PathsContaining(kPartsFolder)) {
    if (path.rfind(kPartsFolder, 0) != 0) continue;
    const std::string name = path.substr(path.rfind('/') + 1);
    parts.emplace(name.substr(0, name.find('.')), std::move(path));
  }
  return parts;
}

// The attachment rows of a message database.
void ReadAttachmentRows(Database& database, const SchemaInfo& schema, size_t databaseIndex,
                        std::vector<Attachment>& attachments) {
  // Before iOS 6 attachments lived in madrid_attachment.
  const std::string table = schema.HasTable("attachment") ? "attachment" : "madrid_attachment";
  if (!schema.HasTable(table)) return;
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
}

// The attachments of the `database`-th message database: its attachment
// rows, then the files of its multimedia parts.
std::vector<Attachment> ReadAttachments(Database& database, size_t databaseIndex) {
  const SchemaInfo schema(database);
  std::vector<Attachment> attachments;
  ReadAttachmentRows(database, schema, databaseIndex, attachments);
  ReadParts(database, schema, databaseIndex, attachments);
  return attachments;
}

}  // namespace

std::vector<Attachment> SmsAttachment::Read(const BackupDevice* device) {
  size_t database = 0;
  std::vector<Attachment> attachments = ReadOwnDatabases(
      device, StoredFilesAt(device, "Library/SMS/sms.db"),
      [&database](Database& opened) { return ReadAttachments(opened, database++); });
  const MediaLocator locator(device);
  const bool hasParts =
      std::any_of(attachments.begin(), attachments.end(), [](const Attachment& a) { return !a.part.empty(); });
  const std::map<std::string, std::string> parts = hasParts ? StoredParts(locator) : std::map<std::string, std::string>();
  size_t position = 0;
  for (Attachment& attachment : attachments) {
    if (const auto stored = parts.find(attachment.part); !attachment.part.empty() && stored != parts.end()) {
      attachment.queryPath = stored->second;
    }
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
