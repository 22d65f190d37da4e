#ifndef YH_KINDS_CURRENT_CONTACTPICTURES_H
#define YH_KINDS_CURRENT_CONTACTPICTURES_H

#include <cstdint>
#include <string>
#include <vector>

#include "common/Database.h"

namespace current {

// A person's picture, written out as a file of its own.
struct ContactPicture {
  int64_t personId = 0;
  std::string path;  // "" when it could not be written
  std::string mimeType;
  uint64_t size = 0;
};

// The picture of each person of an images database (AddressBookImages.sqlitedb)
// by ascending person id: the whole picture (ABFullSizeImage), else the
// largest thumbnail (ABThumbnailImage), the first of them in a known
// picture format (newer devices keep some thumbnails as bare pixels, which
// no viewer opens). Each is written into `folder` (a private folder ending in
// "/", never inside the backup) as "<person id>.<extension>"; nothing is
// written for an empty folder.
std::vector<ContactPicture> WriteContactPictures(Database& database, const std::string& folder);

// The picture of the person with `id` among `pictures`; NULL when none.
const ContactPicture* FindContactPicture(const std::vector<ContactPicture>& pictures, int64_t id);

}  // namespace current

#endif
