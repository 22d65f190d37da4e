#ifndef YH_CRYPTO_BACKUPDECRYPTOR_H
#define YH_CRYPTO_BACKUPDECRYPTOR_H

#include <cstdint>
#include <memory>
#include <string>

#include "crypto/BackupKeys.h"

#include "libYH.h"

// Writes the plain copy of an encrypted backup folder; see DecryptBackup in
// libYH.h. Returns a YHBackupKeyResult.
int32_t DecryptBackupFolder(const std::string& backup, const std::string& out, const std::string& password,
                            YHDecryptProgressCallback progress, void* userData);

// The keys of the backup folder (ending in "/") unwrapped with the password;
// a Manifest.db backup must also hold the key of its index. *keys is set
// only when the result is YHUnlocked.
int32_t OpenBackupKeys(const std::string& backup, bool manifestDb, const std::string& password,
                       std::unique_ptr<BackupKeys>* keys);

#endif
