#include "kinds/current/Photo.h"

#include "common/PlistHelpers.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char kDomain[] = "CameraRollDomain";
const char kLibraryPath[] = "Media/PhotoData/Photos.sqlite";

// Camera pictures are told from the others as the described service tells them.
bool IsCameraPicture(const std::string& libraryPath) { return libraryPath.find("DCIM") != std::string::npos; }

}  // namespace

std::vector<PhotoFile> Photo::Read(const BackupDevice* device) {
  std::vector<PhotoFile> files;
  for (LibraryAsset& asset :
       ReadOwnDatabases(device, StoredFileIn(device, kDomain, kLibraryPath), ReadPhotoLibrary)) {
    PhotoFile file;
    file.relativePath = "Media/" + asset.directory + "/" + asset.fileName;
    // Only the file at the asset's own path counts, never a thumbnail or
    // derivative whose path merely contains it. An asset kept only in the
    // cloud has no file here and is listed without one.
    const std::optional<StoredFile> stored = StoredFileIn(device, kDomain, file.relativePath);
    if (stored && !stored->path.empty()) {
      file.path = stored->path;
      file.size = stored->size;
    }
    file.camera = IsCameraPicture(asset.directory + "/" + asset.fileName);
    file.asset = std::move(asset);
    files.push_back(std::move(file));
  }
  return files;
}

bool Photo::Selects(const PhotoFile& file, int flag) const { return file.camera == (flag == kCamera); }

void Photo::InsertKeys(const PhotoFile& file, plist_t dict) const {
  InsertPlistDictString(dict, "file_name", file.asset.fileName.c_str());
  InsertPlistDictString(dict, "path", file.path.c_str());
  plist_dict_set_item(dict, "size", plist_new_uint(file.size));
  plist_dict_set_item(dict, "type", plist_new_uint(file.camera ? 1 : 0));
  InsertPlistDictString(dict, "query_path", file.relativePath.c_str());
  InsertPlistDictString(dict, "date", file.asset.date.c_str());
  InsertPlistDictString(dict, "original_name", file.asset.originalName.c_str());
  plist_dict_set_item(dict, "video", plist_new_bool(file.asset.video));
  // Trashed assets are kept: "Recently Deleted" still holds their files,
  // and recovering them is what a user is most likely to want.
  plist_dict_set_item(dict, "trashed", plist_new_bool(file.asset.trashed));
  plist_dict_set_item(dict, "present", plist_new_bool(!file.path.empty()));
  if (file.asset.place) {
    plist_dict_set_item(dict, "latitude", plist_new_real(file.asset.place->first));
    plist_dict_set_item(dict, "longitude", plist_new_real(file.asset.place->second));
  }
}

}  // namespace current
