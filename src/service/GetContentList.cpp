#include "service/Extractors.h"
#include "service/ServiceOperations.h"

// No check that the record was analysed: asking before AnalyzeBackup is a
// caller error, as is using a freed record.
plist_t GetContentList(BackupDevice* device, iDeviceContentType type) {
  const auto index = static_cast<uint32_t>(type);  // negative types count as large
  if (index > 10) return nullptr;
  const ContentRoute& route = kContentRoutes[index];
  return route.extractor(device)->FindContent(device, route.flag);
}
