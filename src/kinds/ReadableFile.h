#ifndef YH_KINDS_READABLEFILE_H
#define YH_KINDS_READABLEFILE_H

#include <string>

#include "libYH.h"

// Where a kind reads a stored file of the record's backup (`storedPath`, the
// file's place below the backup folder): the file itself, or for an
// unlocked encrypted backup its decrypted copy in the record's private
// folder, made on this first call and kept for the record's life ("" when
// the file is missing, damaged or has no key). Every path of a stored file
// that a kind opens or names in an answer passes through here, so no kind
// knows whether the backup was encrypted.
std::string ReadablePath(const BackupDevice* device, const std::string& storedPath);

#endif
