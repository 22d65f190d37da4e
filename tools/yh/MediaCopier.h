#ifndef YH_TOOL_MEDIACOPIER_H
#define YH_TOOL_MEDIACOPIER_H

#include <plist/plist.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "BackupFiles.h"
#include "Kinds.h"
#include "OutputFolder.h"
#include "Progress.h"

namespace yh {

// What one kind gave and what of it was written.
struct KindExport {
  const Kind* kind;
  size_t records = 0;
  size_t files = 0;  // media files copied
  uint64_t bytes = 0;
  size_t skipped = 0;  // media files named but not copied
};

// Copies the media files that answers name into media/<kind>/ of an output
// folder, under the record's non-empty "original_name" or else its file name,
// made safe, reading the backup only.
// Files that cannot be copied are named on standard error and skipped.
class MediaCopier {
 public:
  // Copies files of the backup folder or of `copies` ("" for none).
  MediaCopier(const std::string& backupPath, const std::string& copies, const OutputFolder& out, Progress& progress);

  // The name of each media record's copy in media/<kind>/, record by
  // record (nested ones in the order met); "" for a record whose file was
  // not copied.
  std::vector<std::string> Copy(const Kind& kind, plist_t answer, KindExport& result);

 private:
  std::string CopyOne(const Kind& kind, plist_t record, KindExport& result);
  const OutputFolder& MediaFolder(const Kind& kind);

  BackupFiles files_;
  const OutputFolder& out_;
  Progress& progress_;
  std::optional<OutputFolder> media_;
  std::optional<OutputFolder> kindMedia_;
};

}  // namespace yh

#endif
