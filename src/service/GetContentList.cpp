#include "service/Extractors.h"
#include "service/ServiceOperations.h"

// Asking before AnalyzeBackup is a caller error, as is using a freed record.
plist_t GetContentList(BackupDevice* device, iDeviceContentType type) {
  int flag = 0;
  Kind* kind = DescribedKindOf(device, type, &flag);
  return kind ? kind->FindContent(device, flag) : nullptr;
}
