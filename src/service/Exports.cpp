#include <cstdlib>

#include "libYH.h"
#include "service/ServiceOperations.h"
#include "service/current/CurrentService.h"

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

// The same table type: a host changes services by changing this one call.
iDeviceBackupService* CreateCurrentDataRecoveryService() {
  iDeviceBackupService* table = CreateDataRecoveryService();
  table->AnalyzeBackup = AnalyzeCurrentBackup;
  table->GetContentList = GetCurrentContentList;
  return table;
}

void FreeiDeviceBackupService(void* table) { free(table); }

void YHFree(void* block) { free(block); }
