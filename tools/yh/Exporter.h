#ifndef YH_TOOL_EXPORTER_H
#define YH_TOOL_EXPORTER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "BackupFiles.h"
#include "Kinds.h"
#include "Library.h"
#include "OutputFolder.h"
#include "Progress.h"
#include "Render.h"

namespace yh {

// What one kind gave and what of it was written.
struct KindExport {
  const Kind* kind;
  size_t records = 0;
  size_t files = 0;  // media files copied
  uint64_t bytes = 0;
  size_t skipped = 0;  // media files named but not copied
};

// Writes each kind's answer as <kind>.json and <kind>.csv into the output
// folder and copies the media files the answers name into media/<kind>/,
// reading the backup only. Files that cannot be copied are reported on
// standard error and skipped.
class Exporter {
 public:
  Exporter(const Library& library, BackupDevice& device, const std::string& out);

  KindExport Export(const Kind& kind);

 private:
  void WriteAnswerFile(const std::string& name, Format format, const Answer& answer);
  void CopyMedia(const Kind& kind, plist_t answer, KindExport& result);
  void CopyOne(const Kind& kind, plist_t record, KindExport& result);
  const OutputFolder& MediaFolder(const Kind& kind);

  const Library& library_;
  BackupDevice& device_;
  BackupFiles files_;
  OutputFolder out_;
  std::optional<OutputFolder> media_;
  std::optional<OutputFolder> kindMedia_;
  Progress progress_;
};

}  // namespace yh

#endif
