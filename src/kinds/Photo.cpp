#include "kinds/Photo.h"

#include <optional>
#include <string>
#include <vector>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/FileHelpers.h"
#include "common/PlistHelpers.h"
#include "kinds/MediaLocator.h"
#include "kinds/SourceFiles.h"

namespace {

const char kZGenericAssetQuery[] =
    "select ZDIRECTORY || '/' || ZFILENAME,ZFILENAME from ZGENERICASSET where ZFILENAME is not null "
    "and ZDIRECTORY is not null";
const char kPhotoQuery[] =
    "select directory || '/' || filename,filename from Photo where filename is not null and directory "
    "is not null";

const SourcePaths kPhotoSource{"Media/PhotoData/Photos.sqlite", "Media/PhotoData/Photos.sqlite"};

int PhotoDbCallback(void* records, int columns, char** values, char** /*names*/) {
  if (columns < 2 || !values) return 0;
  auto* asset = new GenericAsset;
  asset->queryPath = GetEmptyStringIsNull(values[0]);
  asset->fileName = GetEmptyStringIsNull(values[1]);
  asset->type = asset->queryPath.find("DCIM") != std::string::npos ? 1 : 0;
  static_cast<std::vector<GenericAsset*>*>(records)->push_back(asset);
  return 0;
}

// Scans for the first file containing `needle` that has any bytes. Every
// file met on the way is appended to the asset's path, empty ones too, so
// that an empty copy leaves its trace before the one that counts.
bool LocateFirstNonEmpty(const MediaLocator& locator, const std::string& needle, GenericAsset& asset) {
  locator.ForEachContaining(needle, [&locator, &asset](const ReadableFile& stored) {
    asset.path += stored.path;
    asset.size = locator.SizeNow(stored);
    return asset.size == 0;
  });
  return asset.size != 0;
}

}  // namespace

int Photo::QueryZGenericAsset(Database& db) {
  return db.Exec(kZGenericAssetQuery, PhotoDbCallback, &records_) ? 0 : -1;
}

int Photo::QueryPhoto(Database& db) { return db.Exec(kPhotoQuery, PhotoDbCallback, &records_) ? 0 : -1; }

void Photo::AddPhotoList(const char* path) {
  Database db(path);
  if (!db.IsOpen()) return;
  // Older libraries have no ZGENERICASSET table; only they are read through Photo.
  if (QueryZGenericAsset(db) != 0) QueryPhoto(db);
}

bool Photo::Locate(const MediaLocator& locator, BackupType backupType, GenericAsset& asset) {
  if (backupType == BackupType::ManifestDb && asset.type == 1) {
    // Camera pictures sit below "Media/" in the index; only that exact path
    // counts, and the picture is kept even when its file is empty.
    asset.queryPath.insert(0, "Media/");
    const std::optional<ReadableFile> stored = locator.FindExact(asset.queryPath);
    if (!stored) return false;
    asset.path += stored->path;
    asset.size = locator.SizeNow(*stored);
    return true;
  }
  return LocateFirstNonEmpty(locator, asset.queryPath, asset);
}

void Photo::ReadBackup(BackupDevice* device) {
  for (const std::string& path : SourceFiles(device, kPhotoSource)) AddPhotoList(path.c_str());
  const MediaLocator locator(device);
  const BackupType backupType = *BackupTypeOf(device);
  KeepRecordsIf([&](GenericAsset& asset) {
    VqCheckAlive(&asset);
    return Locate(locator, backupType, asset);
  });
}

bool Photo::Selects(const GenericAsset& asset, int type) const {
  return asset.type == type && !asset.path.empty();
}

void Photo::FillDict(const GenericAsset& asset, plist_t dict) const {
  InsertPlistDictString(dict, "file_name", asset.fileName.c_str());
  InsertPlistDictString(dict, "path", asset.path.c_str());
  plist_dict_set_item(dict, "size", plist_new_uint(asset.size));
  plist_dict_set_item(dict, "type", plist_new_uint(static_cast<uint64_t>(asset.type)));
  InsertPlistDictString(dict, "query_path", asset.queryPath.c_str());
}
