#include <memory>

#include "crypto/BackupDecryptor.h"
#include "crypto/EncryptedBackup.h"
#include "libYH.h"
#include "service/Analysis.h"

// The keys live in the record's session; a record not yet analysed gets its
// session here, and AnalyzeBackup keeps it.
int32_t UnlockBackup(BackupDevice* device, const char* password) {
  if (!device || !password || !device->backupPath) return YHNoBackup;
  const std::optional<BackupType> type = BackupTypeOf(device);
  if (!type) return YHNoBackup;
  std::unique_ptr<BackupKeys> keys;
  const int32_t result = OpenBackupKeys(device->backupPath, *type == BackupType::ManifestDb, password, &keys);
  if (result != YHUnlocked) return result;
  BackupSession& session = SessionFor(device);
  const std::string folder = session.NewCopyFolder();
  if (folder.empty()) return YHWriteFailed;
  session.SetEncrypted(std::make_unique<EncryptedBackup>(std::move(keys), device->backupPath, folder));
  return YHUnlocked;
}
