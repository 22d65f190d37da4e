#ifndef YH_KINDS_CURRENT_PHOTO_H
#define YH_KINDS_CURRENT_PHOTO_H

#include <cstdint>
#include <string>
#include <vector>

#include "kinds/current/PhotoLibrary.h"
#include "kinds/current/StoredRecordKind.h"
#include "libYH.h"

namespace current {

// A picture or video of the photo library with its stored file.
struct PhotoFile {
  LibraryAsset asset;
  std::string relativePath;  // "Media/" + directory + "/" + file name
  std::string path;  // "" when the backup does not hold the file
  uint64_t size = 0;
  bool camera = false;
};

// Every picture and video of the photo library, read once and answered in
// two groups: camera pictures (kCamera), those whose path names DCIM, and the
// rest (kOther). Each is located exactly by its path in CameraRollDomain; an
// asset whose file the backup does not hold (kept only in the cloud, or
// missing) is listed with an empty path and size 0. Besides the described
// keys: "date", "original_name", "video", "trashed", "present" and, for an
// asset that records where it was taken, "latitude" and "longitude". NULL when
// the library lists no asset.
class Photo : public StoredRecordKind<PhotoFile> {
 public:
  // The flags that ask for each group.
  enum Flag : int { kOther = 0, kCamera = 1 };

  Photo() : StoredRecordKind(WhenNone::Null) {}

 private:
  std::vector<PhotoFile> Read(const BackupDevice* device) override;
  bool Selects(const PhotoFile& file, int flag) const override;
  void InsertKeys(const PhotoFile& file, plist_t dict) const override;
};

}  // namespace current

#endif
