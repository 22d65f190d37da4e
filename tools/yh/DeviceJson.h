#ifndef YH_TOOL_DEVICEJSON_H
#define YH_TOOL_DEVICEJSON_H

#include "Library.h"
#include "PlistJson.h"

namespace yh {

// What the library tells of one backup: folder, path, device and product
// texts, last backup date, encryption and index kind.
Json DeviceJson(const BackupDevice& device);

}  // namespace yh

#endif
