#include "crypto/BackupDecryptor.h"
#include "libYH.h"

int32_t DecryptBackup(const char* backup, const char* out, const char* password, YHDecryptProgressCallback progress,
                      void* userData) {
  if (!backup || !out || !password || !*backup || !*out) return YHNoBackup;
  return DecryptBackupFolder(backup, out, password, progress, userData);
}
