/* Lists the device backups of the current user with their device fields,
 * using nothing but the public interface. */
#include <libYH.h>

#include <stdio.h>

static const char* Text(const char* value) { return value ? value : "(none)"; }

int main(void) {
  iDeviceBackupService* service = CreateDataRecoveryService();
  BackupDevice* list = service->GetBackupDeviceList();
  if (!list) printf("No backups found.\n");
  for (BackupDevice* device = list; device; device = device->next) {
    printf("%s\n", device->backupPath);
    printf("  Device name:       %s\n", Text(device->deviceName));
    printf("  Last backup:       %s\n", Text(device->lastBackupDate));
    printf("  Serial number:     %s\n", Text(device->serialNumber));
    printf("  Product name:      %s\n", Text(device->productName));
    printf("  Product type:      %s\n", Text(device->productType));
    printf("  Product version:   %s\n", Text(device->productVersion));
    printf("  Unique identifier: %s\n", Text(device->uniqueIdentifier));
    printf("  Encrypted:         %s\n", device->isEncrypted ? "yes" : "no");
    printf("  Index:             %s\n", device->backupType == 0 ? "Manifest.mbdb" : "Manifest.db");
  }
  const int found = list != NULL;
  for (BackupDevice* device = list; device; device = device->next) {
    YHFree(device->productName);  /* the four texts FreeBackupDevice leaves to the host */
    YHFree(device->productType);
    YHFree(device->productVersion);
    YHFree(device->uniqueIdentifier);
  }
  service->FreeBackupDevice(list);
  FreeiDeviceBackupService(service);
  return found ? 0 : 1;
}
