#ifndef YH_KINDS_READABLEFILE_H
#define YH_KINDS_READABLEFILE_H

#include <cstdint>
#include <string>

#include "platform/Folder.h"

#include "libYH.h"

// Where a kind reads a stored file of the record's backup (`storedPath`, the
// file's place below the backup folder): the file itself, or for an
// unlocked encrypted backup its decrypted copy in the record's private
// folder, made on this first call and kept for the record's life ("" when
// the file is missing, damaged or has no key). Every path of a stored file
// that a kind opens or names in an answer passes through here, so no kind
// knows whether the backup was encrypted.
std::string ReadablePath(const BackupDevice* device, const std::string& storedPath);

// A stored file where a kind reads it, with what stat() finds there: for a
// plain backup what the index's existence test found (`stored`), so that
// thirty thousand pictures cost no second look each; for a decrypted copy a
// look at the copy, whose size is not the stored file's. Design decision: a
// file changed after the analysis keeps the size it had then.
struct ReadableFile {
  std::string path;  // "" when the bytes cannot be read
  uint64_t size = 0;
  bool regular = false;  // a plain file, not a folder
};
ReadableFile ReadableFileOf(const BackupDevice* device, const std::string& storedPath, const Folder::Entry& stored);

#endif
