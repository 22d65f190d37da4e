/* A host written in C that sees only the public header: it makes a tiny
 * backup, then runs the whole calling order through the service table. */
#include <libYH.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "HostSystem.h"

static int failures = 0;

#define CHECK(cond)                                                   \
  do {                                                                \
    if (!(cond)) {                                                    \
      fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
      failures++;                                                     \
    }                                                                 \
  } while (0)

static int32_t CountRecord(plist_t record, void* count) {
  (void)record;
  ++*(int*)count;
  return YHRecordNext;
}

static void WriteFile(const char* path, const void* bytes, size_t length) {
  FILE* file = fopen(path, "wb");
  if (!file) {
    perror(path);
    exit(2);
  }
  fwrite(bytes, 1, length, file);
  fclose(file);
}

int main(void) {
  char root[400];
  char folder[500];
  if (MakeTemporaryRoot(root, sizeof root) != 0 || MakeDefaultLocation(root, folder, sizeof folder) != 0) return 2;
  char path[600];
  snprintf(path, sizeof path, "%s/0123456789abcdef", folder);
  MakeFolder(path);

  static const char kInfo[] =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\"><dict>"
      "<key>Device Name</key><string>C Phone</string>"
      "<key>Product Type</key><string>iPhone5,2</string>"
      "</dict></plist>\n";
  snprintf(path, sizeof path, "%s/0123456789abcdef/Info.plist", folder);
  WriteFile(path, kInfo, strlen(kInfo));
  snprintf(path, sizeof path, "%s/0123456789abcdef/Manifest.mbdb", folder);
  WriteFile(path, "mbdb\x05\x00", 6);

  iDeviceBackupService* service = CreateDataRecoveryService();
  CHECK(service != NULL);
  BackupDevice* list = service->GetBackupDeviceList();
  CHECK(list != NULL);
  if (list) {
    CHECK(list->next == NULL);
    CHECK(list->backupType == 0);
    CHECK(list->deviceName && strcmp(list->deviceName, "C Phone") == 0);
    CHECK(list->productType && strcmp(list->productType, "iPhone5,2") == 0);
    CHECK(list->backupPath[strlen(list->backupPath) - 1] == '/');
    char* productType = list->productType; /* left to the host by FreeBackupDevice */
    CHECK(service->AnalyzeBackup(list) == 1);
    for (int type = ContentCallHistory; type <= ContentOtherPhoto; ++type) {
      plist_t answer = service->GetContentList(list, (iDeviceContentType)type);
      plist_free(answer);
    }
    CHECK(service->GetContentList(list, (iDeviceContentType)11) == NULL);
    int records = 0;
    CHECK(GetContentRecords(list, ContentSms, CountRecord, &records) == YHRecordsDone);
    CHECK(GetContentRecords(list, (iDeviceContentType)11, CountRecord, &records) == YHRecordsNone);
    service->FreeBackupDevice(list);
    YHFree(productType);
  }
  FreeiDeviceBackupService(service);

  if (RemoveRoot(root) != 0) failures++;
  return failures ? 1 : 0;
}
