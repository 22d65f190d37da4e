#ifndef YH_SERVICE_DISCOVERY_H
#define YH_SERVICE_DISCOVERY_H

#include <string>

#include "libYH.h"

// A record for the backup in `folder` (ending in "/"), or NULL when the
// folder holds no backup index.
BackupDevice* NewBackupRecord(const std::string& folder);

// One record per sub-folder of `backupFolder` that holds a backup index, in
// listing order; NULL when there is none.
BackupDevice* ListBackupsIn(const std::string& backupFolder);

// Fills the device texts and the encryption mark of a record whose
// backupPath is set, from its Info.plist and Manifest.plist.
void StoreBackupDeviceInfo(BackupDevice* record);

#endif
