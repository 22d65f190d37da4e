#ifndef YH_CRYPTO_BACKUPDECRYPTOR_H
#define YH_CRYPTO_BACKUPDECRYPTOR_H

#include <cstdint>
#include <string>

#include "libYH.h"

// Writes the plain copy of an encrypted backup folder; see DecryptBackup in
// libYH.h. Returns a YHBackupKeyResult.
int32_t DecryptBackupFolder(const std::string& backup, const std::string& out, const std::string& password,
                            YHDecryptProgressCallback progress, void* userData);

#endif
