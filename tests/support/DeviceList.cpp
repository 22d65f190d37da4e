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

ApplicationSupportOverride::ApplicationSupportOverride(const std::string& applicationSupport) {
  const char* old = getenv("XDG_DATA_HOME");
  hadValue_ = old != nullptr;
  if (old) oldValue_ = old;
  setenv("XDG_DATA_HOME", applicationSupport.c_str(), 1);
}

ApplicationSupportOverride::~ApplicationSupportOverride() {
  if (hadValue_) {
    setenv("XDG_DATA_HOME", oldValue_.c_str(), 1);
  } else {
    unsetenv("XDG_DATA_HOME");
  }
}

}  // namespace yhtest
