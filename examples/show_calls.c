#include <libYH.h>
#include <stdio.h>

int main(void) {
  iDeviceBackupService* service = CreateDataRecoveryService();
  BackupDevice* list = service->GetBackupDeviceList();
  for (BackupDevice* device = list; device; device = device->next) {
    printf("%s (%s)\n", device->deviceName ? device->deviceName : "?", device->backupPath);
    if (service->AnalyzeBackup(device) != 1) continue;       /* index missing or unreadable */
    plist_t calls = service->GetContentList(device, ContentCallHistory);
    if (calls) {
      char* xml = NULL;
      uint32_t length = 0;
      plist_to_xml(calls, &xml, &length);
      fputs(xml, stdout);
      plist_to_xml_free(xml);
      plist_free(calls);                                       /* every answer belongs to the caller */
    }
  }
  for (BackupDevice* device = list; device; device = device->next) {
    YHFree(device->productName);                               /* the four texts left to the host */
    YHFree(device->productType);
    YHFree(device->productVersion);
    YHFree(device->uniqueIdentifier);
  }
  service->FreeBackupDevice(list);
  FreeiDeviceBackupService(service);
  return 0;
}
