#ifndef YH_SERVICE_CURRENT_CURRENTSERVICE_H
#define YH_SERVICE_CURRENT_CURRENTSERVICE_H

#include "libYH.h"

// The operations in which the current service differs from the described
// one; listing and freeing backups are the same for both.
int32_t AnalyzeCurrentBackup(BackupDevice* device);
plist_t GetCurrentContentList(BackupDevice* device, iDeviceContentType type);

#endif
