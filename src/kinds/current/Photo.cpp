#include "kinds/current/Photo.h"

#include "common/PlistHelpers.h"
#include "kinds/LocalDatabase.h"
#include "kinds/StoredFiles.h"

namespace current {
namespace {

const char kDomain[] = "CameraRollDomain";
const char kLibraryPath[] = "Media/PhotoData/Photos.sqlite";

// Camera pictures are told from the others as the described service tells them.
bool IsCameraPicture(const std::string& libraryPath) { return libraryPath.find("DCIM") != std::string::npos; }

}  // namespace

plist_t Photo::Group::FindContent(void* device, int /*flag*/) {
  return photo_.Answer(static_cast<const BackupDevice*>(device), camera_);
}

void Photo::Read(const BackupDevice* device) {
  read_ = true;
  const std::optional<StoredFile> library = StoredFileIn(device, kDomain, kLibraryPath);
  if (!library) return;
  Database database = OpenStoredDatabase(device, *library);
  for (LibraryAsset& asset : ReadPhotoLibrary(database)) {
    Located located;
    located.relativePath = "Media/" + asset.directory + "/" + asset.fileName;
    // Only the file at the asset's own path counts, never a thumbnail or
    // derivative whose path merely contains it. An asset kept only in the
    // cloud has no file here and is listed without one.
    const std::optional<StoredFile> stored = StoredFileIn(device, kDomain, located.relativePath);
    if (stored && !stored->path.empty()) {
      located.path = stored->path;
      located.size = stored->size;
    }
    located.camera = IsCameraPicture(asset.directory + "/" + asset.fileName);
    located.asset = std::move(asset);
    located_.push_back(std::move(located));
  }
}

plist_t Photo::Answer(const BackupDevice* device, bool camera) {
  if (!read_) Read(device);
  if (located_.empty()) return nullptr;
  plist_t array = plist_new_array();
  for (const Located& located : located_) {
    if (located.camera != camera) continue;
    plist_t dict = plist_new_dict();
    InsertPlistDictString(dict, "file_name", located.asset.fileName.c_str());
    InsertPlistDictString(dict, "path", located.path.c_str());
    plist_dict_set_item(dict, "size", plist_new_uint(located.size));
    plist_dict_set_item(dict, "type", plist_new_uint(located.camera ? 1 : 0));
    InsertPlistDictString(dict, "query_path", located.relativePath.c_str());
    InsertPlistDictString(dict, "date", located.asset.date.c_str());
    InsertPlistDictString(dict, "original_name", located.asset.originalName.c_str());
    plist_dict_set_item(dict, "video", plist_new_bool(located.asset.video));
    // Trashed assets are kept: "Recently Deleted" still holds their files,
    // and recovering them is what a user is most likely to want.
    plist_dict_set_item(dict, "trashed", plist_new_bool(located.asset.trashed));
    plist_dict_set_item(dict, "present", plist_new_bool(!located.path.empty()));
    plist_array_append_item(array, dict);
  }
  return array;
}

}  // namespace current
