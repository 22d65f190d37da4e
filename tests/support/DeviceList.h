#ifndef YH_TESTS_SUPPORT_DEVICELIST_H
#define YH_TESTS_SUPPORT_DEVICELIST_H

#include <string>

#include "libYH.h"

namespace yhtest {

// Frees a device list as a careful host does: FreeBackupDevice leaves the
// product name, type and version and the unique identifier to the host, so
// they are freed here first (a double free would show under the sanitizers
// if FreeBackupDevice ever released them too).
void FreeDeviceList(BackupDevice* head);

// A fresh record for a backup folder, as discovery makes it, ready for
// AnalyzeBackup.
BackupDevice* NewDevice(const std::string& backupPath, int32_t backupType);

}  // namespace yhtest

#endif
