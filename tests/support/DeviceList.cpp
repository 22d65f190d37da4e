#include "support/DeviceList.h"

#include <cstdlib>
#include <cstring>

#include "service/ServiceOperations.h"

namespace yhtest {

void FreeDeviceList(BackupDevice* head) {
  for (BackupDevice* device = head; device; device = device->next) {
    free(device->productName);
    free(device->productType);
    free(device->productVersion);
    free(device->uniqueIdentifier);
  }
  FreeBackupDevice(head);
}

BackupDevice* NewDevice(const std::string& backupPath, int32_t backupType) {
  auto* device = static_cast<BackupDevice*>(calloc(1, sizeof(BackupDevice)));
  device->backupPath = strdup(backupPath.c_str());
  device->backupType = backupType;
  return device;
}

}  // namespace yhtest
