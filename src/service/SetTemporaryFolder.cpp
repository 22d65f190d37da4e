#include "libYH.h"
#include "session/BackupSession.h"

int32_t SetTemporaryFolder(BackupDevice* device, const char* folder) {
  if (!device || !folder || folder[0] != '/' || !BackupTypeOf(device)) return 0;
  SessionFor(device).SetTemporaryRoot(folder);
  return 1;
}
