#include "libYH.h"
#include "platform/FileSystem.h"
#include "session/BackupSession.h"

int32_t SetTemporaryFolder(BackupDevice* device, const char* folder) {
  if (!device || !folder || !platform::IsAbsolutePath(folder) || !BackupTypeOf(device)) return 0;
  SessionFor(device).SetTemporaryRoot(folder);
  return 1;
}
