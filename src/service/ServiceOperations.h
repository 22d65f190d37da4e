#ifndef YH_SERVICE_SERVICEOPERATIONS_H
#define YH_SERVICE_SERVICEOPERATIONS_H

#include "libYH.h"

// The four operations of the service table, in slot order.
BackupDevice* GetBackupDeviceList();
void FreeBackupDevice(BackupDevice* head);
int32_t AnalyzeBackup(BackupDevice* device);
plist_t GetContentList(BackupDevice* device, iDeviceContentType type);

#endif
