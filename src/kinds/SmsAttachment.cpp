#include "kinds/SmsAttachment.h"

#include <cstring>
#include <optional>

#include "common/Database.h"
#include "common/FileHelpers.h"
#include "common/PlistHelpers.h"
#include "common/TextHelpers.h"
#include "kinds/MediaLocator.h"
#include "kinds/SourceFiles.h"

namespace {

const char kAttachmentQuery[] = "select filename,mime_type from attachment";
const char kMadridAttachmentQuery[] = "select filename,mime_type from madrid_attachment";

const SourcePaths kSmsSource{"Library/SMS/sms.db", "Library/SMS/sms.db"};

// Newer devices name attachments from "~/", older ones from the device's
// home folder ("/var/mobile/"); the prefix is cut without being checked.
const size_t kHomePrefixLength = 2;
const size_t kMadridHomePrefixLength = 12;

// Manifest.db paths this short cannot name an attachment file.
const size_t kShortestQueryPath = 3;

void AddAttachment(void* context, int columns, char** values, size_t prefixLength) {
  if (columns < 2 || !values || !values[0] || std::strlen(values[0]) <= prefixLength) return;
  auto* asset = new AttachmentAsset;
  asset->queryPath = values[0] + prefixLength;
  const char* mimeType = values[1];
  asset->type = mimeType && std::strstr(mimeType, "image") ? 0 : 1;
  static_cast<std::vector<AttachmentAsset*>*>(context)->push_back(asset);
}

int PhotoDbCallback(void* context, int columns, char** values, char**) {
  AddAttachment(context, columns, values, kHomePrefixLength);
  return 0;
}

int PhotoMadridDbCallback(void* context, int columns, char** values, char**) {
  AddAttachment(context, columns, values, kMadridHomePrefixLength);
  return 0;
}

}  // namespace

void SmsAttachment::ReadBackup(BackupDevice* device) {
  for (const std::string& path : SourceFiles(device, kSmsSource)) AddAttachmentList(path);
  LocateFiles(device);
  for (size_t i = 0; i < records_.size(); ++i) records_[i]->position = i + 1;
}

void SmsAttachment::LocateFiles(const BackupDevice* device) {
  const MediaLocator locator(device);
  // On a Manifest.db backup an attachment missing from the index leaves the
  // list, so it takes no number; on a Manifest.mbdb backup it stays unlocated
  // and keeps its number.
  const bool dropMissing = BackupTypeOf(device) == BackupType::ManifestDb;
  KeepRecordsIf([&](AttachmentAsset& asset) {
    VqCheckAlive(&asset);
    if (dropMissing && asset.queryPath.size() < kShortestQueryPath) return false;
    const std::optional<ReadableFile> stored = locator.FindExact(asset.queryPath);
    if (!stored) return !dropMissing;
    asset.path = stored->path;
    asset.size = locator.SizeNow(*stored);
    return true;
  });
}

bool SmsAttachment::Selects(const AttachmentAsset& asset, int) const { return !asset.path.empty(); }

void SmsAttachment::FillDict(const AttachmentAsset& asset, plist_t dict) const {
  // Design decision: a query path without "." gives a name without an
  // extension, and a long extension is written whole rather than cut.
  std::string name = "IMG_" + std::to_string(asset.position);
  if (const char* extension = GetFilePostfix(asset.queryPath.c_str())) name += extension;
  InsertPlistDictString(dict, "file_name", name.c_str());
  InsertPlistDictString(dict, "path", asset.path.c_str());
  plist_dict_set_item(dict, "size", plist_new_uint(asset.size));
  plist_dict_set_item(dict, "type", plist_new_uint(static_cast<uint64_t>(asset.type)));
  InsertPlistDictString(dict, "query_path", asset.queryPath.c_str());
}

void SmsAttachment::AddAttachmentList(const std::string& path) {
  Database db(path);
  if (!db.IsOpen()) return;
  // Before iOS 6 attachments lived in madrid_attachment.
  if (QueryAttachment(db) != 0) QueryMadridAttachment(db);
}

int SmsAttachment::QueryAttachment(Database& db) {
  return db.Exec(kAttachmentQuery, PhotoDbCallback, &records_) ? 0 : -1;
}

int SmsAttachment::QueryMadridAttachment(Database& db) {
  return db.Exec(kMadridAttachmentQuery, PhotoMadridDbCallback, &records_) ? 0 : -1;
}
