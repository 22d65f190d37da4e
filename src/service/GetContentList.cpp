#include "service/Extractors.h"
#include "service/KindAnswer.h"
#include "service/ServiceOperations.h"

// Asking before AnalyzeBackup is a caller error, as is using a freed record.
plist_t GetContentList(BackupDevice* device, iDeviceContentType type) {
  return KindAnswer(DescribedKindOf, device, type, &Kind::FindContent);
}
