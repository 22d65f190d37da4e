#ifndef YH_KINDS_GENERICASSET_H
#define YH_KINDS_GENERICASSET_H

#include <cstdint>
#include <string>

#include "common/VqBase.h"

// One image file of the photo library, and where the backup keeps it.
class GenericAsset : public VqBase {
 public:
  std::string fileName;
  std::string queryPath;  // directory + "/" + file name as the library stores them
  std::string path;       // stored file(s) in the backup; empty until located
  uint64_t size = 0;
  int32_t type = 0;  // 1 camera picture ("DCIM" in the query path), 0 other image
};

#endif
