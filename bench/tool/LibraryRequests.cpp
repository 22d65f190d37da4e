#include "LibraryRequests.h"

#include <libYH.h>

#include "Isolated.h"
#include "Stopwatch.h"

namespace bench {

bool MakeRequests(const std::string& folder, Requests requests) {
  iDeviceBackupService* service = CreateCurrentDataRecoveryService();
  BackupDevice* devices = GetBackupDeviceListAt(folder.c_str());
  const bool analysed = devices && service->AnalyzeBackup(devices) == 1;
  if (analysed && requests == Requests::ShowAll) {
    for (int type = ContentCallHistory; type <= ContentWhatsAppCalls; ++type) {
      plist_free(service->GetContentList(devices, static_cast<iDeviceContentType>(type)));
    }
  }
  service->FreeBackupDevice(devices);
  FreeiDeviceBackupService(service);
  return analysed;
}

ProgramRun RunLibrary(const std::string& folder, Requests requests) {
  ProgramRun run;
  bool done = false;
  run.ms = Milliseconds([&] {
    run.ok = RunIsolated([&](bool* ok) { return *ok = MakeRequests(folder, requests); }, &done, &run.peakMb);
  });
  return run;
}

}  // namespace bench
