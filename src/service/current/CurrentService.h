#ifndef YH_SERVICE_CURRENT_CURRENTSERVICE_H
#define YH_SERVICE_CURRENT_CURRENTSERVICE_H

#include "kinds/Kind.h"
#include "libYH.h"

// The operations in which the current service differs from the described
// one; listing and freeing backups are the same for both.
int32_t AnalyzeCurrentBackup(BackupDevice* device);
plist_t GetCurrentContentList(BackupDevice* device, iDeviceContentType type);

// The kind that answers `type` for a record this service analysed, and the
// flag it is asked with; NULL for any other record or type.
Kind* CurrentKindOf(BackupDevice* device, iDeviceContentType type, int* flag);

#endif
