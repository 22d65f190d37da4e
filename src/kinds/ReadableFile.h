#ifndef YH_KINDS_READABLEFILE_H
#define YH_KINDS_READABLEFILE_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "index/IndexReader.h"
#include "libYH.h"

// A stored file where a kind reads it, with what stat() finds there.
struct ReadableFile {
  std::string path;  // "" when the bytes cannot be read
  uint64_t size = 0;
  bool regular = false;  // a plain file, not a folder
};

// The stored file of the record at `position` of the record's reader,
// where a kind reads it: the file itself (backup folder + the reader's
// stored name, the one place a record's stored path is worked out), or for
// an unlocked encrypted backup its decrypted copy in the record's private
// folder, made on this first call and kept for the record's life ("" when
// the file is missing, damaged or has no key). Every stored file that a
// kind opens or names in an answer passes through here, so no kind knows
// whether the backup was encrypted. For a plain backup the size is what the
// index's existence test found, so that thirty thousand pictures cost no
// second look each; for a decrypted copy a look at the copy, whose size is
// not the stored file's. Design decision: a file changed after the analysis
// keeps the size it had then.
ReadableFile ReadableFileAt(const BackupDevice* device, IndexReader& reader, size_t position);

#endif
