#include "ShowRequests.h"

#include <libYH.h>

namespace bench {

bool MakeShowRequests(const std::string& folder) {
  iDeviceBackupService* service = CreateCurrentDataRecoveryService();
  BackupDevice* devices = GetBackupDeviceListAt(folder.c_str());
  const bool analysed = devices && service->AnalyzeBackup(devices) == 1;
  if (analysed) {
    for (int type = ContentCallHistory; type <= ContentWhatsAppCalls; ++type) {
      plist_free(service->GetContentList(devices, static_cast<iDeviceContentType>(type)));
    }
  }
  service->FreeBackupDevice(devices);
  FreeiDeviceBackupService(service);
  return analysed;
}

}  // namespace bench
