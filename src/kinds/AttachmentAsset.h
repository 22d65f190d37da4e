#ifndef YH_KINDS_ATTACHMENTASSET_H
#define YH_KINDS_ATTACHMENTASSET_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "common/VqBase.h"

// One file attached to a message, and where the backup keeps it.
class AttachmentAsset : public VqBase {
 public:
  std::string queryPath;  // device path without its home-folder prefix
  std::string path;       // stored file in the backup; empty until located
  uint64_t size = 0;
  int32_t type = 1;       // 0 image, 1 anything else
  // 1-based place in the attachment list once the list is complete; the
  // generated file name is numbered by it.
  size_t position = 0;
};

#endif
