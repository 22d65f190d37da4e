#ifndef YH_KINDS_CURRENT_PHOTO_H
#define YH_KINDS_CURRENT_PHOTO_H

#include <cstdint>
#include <string>
#include <vector>

#include "kinds/Kind.h"
#include "kinds/current/PhotoLibrary.h"
#include "libYH.h"

namespace current {

// Every picture and video of the photo library, read once and answered in
// two groups: `camera` those whose path names DCIM, `other` the rest. Each is
// located exactly by its path in CameraRollDomain; an asset whose file the
// backup does not hold (kept only in the cloud, or missing) is listed with an
// empty path and size 0. Besides the described keys: "date",
// "original_name", "video", "trashed" and "present".
class Photo {
 public:
  Photo() : camera(*this, true), other(*this, false) {}
  Photo(const Photo&) = delete;
  Photo& operator=(const Photo&) = delete;

  // One group's answer: NULL when the library lists no asset.
  class Group : public Kind {
   public:
    Group(Photo& photo, bool camera) : photo_(photo), camera_(camera) {}
    plist_t FindContent(void* device, int flag) override;

   private:
    Photo& photo_;
    bool camera_;
  };

  Group camera;
  Group other;

 private:
  struct Located {
    LibraryAsset asset;
    std::string relativePath;  // "Media/" + directory + "/" + file name
    std::string path;  // "" when the backup does not hold the file
    uint64_t size = 0;
    bool camera = false;
  };

  void Read(const BackupDevice* device);
  plist_t Answer(const BackupDevice* device, bool camera);

  bool read_ = false;
  std::vector<Located> located_;
};

}  // namespace current

#endif
