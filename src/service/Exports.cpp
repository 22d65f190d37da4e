#include <cstdlib>

#include "libYH.h"
#include "service/ServiceOperations.h"

// The table is a plain malloc block so that a host written in C can free it
// itself; its allocation is not tested, like every small allocation here.
iDeviceBackupService* CreateDataRecoveryService() {
  auto* table = static_cast<iDeviceBackupService*>(malloc(sizeof(iDeviceBackupService)));
  table->GetBackupDeviceList = GetBackupDeviceList;
  table->FreeBackupDevice = FreeBackupDevice;
  table->AnalyzeBackup = AnalyzeBackup;
  table->GetContentList = GetContentList;
  return table;
}

void FreeiDeviceBackupService(void* table) { free(table); }
