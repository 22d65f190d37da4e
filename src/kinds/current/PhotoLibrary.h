#ifndef YH_KINDS_CURRENT_PHOTOLIBRARY_H
#define YH_KINDS_CURRENT_PHOTOLIBRARY_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/Database.h"

namespace current {

// One picture or video as the photo library records it.
struct LibraryAsset {
  std::string directory;  // below the device's Media folder, e.g. "DCIM/100APPLE"
  std::string fileName;
  std::string date;          // creation, true local time; "" when not recorded
  std::string originalName;  // the name it was imported or saved under; "" when not recorded
  bool video = false;
  bool trashed = false;
  // Where it was taken, latitude and longitude in degrees; none when not recorded.
  std::optional<std::pair<double, double>> place;
};

// The assets of a photo library of any generation (ZASSET from iOS 14,
// ZGENERICASSET before, the Photo table of the oldest), in table order.
// Rows without a directory or file name are left out.
std::vector<LibraryAsset> ReadPhotoLibrary(Database& database);

}  // namespace current

#endif
