#include "DeviceJson.h"

namespace yh {

Json DeviceJson(const BackupDevice& device) {
  return {{"folder", FolderName(device)},
          {"path", Text(device.backupPath)},
          {"deviceName", Text(device.deviceName)},
          {"productName", Text(device.productName)},
          {"productType", Text(device.productType)},
          {"productVersion", Text(device.productVersion)},
          {"serialNumber", Text(device.serialNumber)},
          {"uniqueIdentifier", Text(device.uniqueIdentifier)},
          {"lastBackupDate", Text(device.lastBackupDate)},
          {"encrypted", device.isEncrypted != 0},
          {"index", IndexName(device)}};
}

}  // namespace yh
