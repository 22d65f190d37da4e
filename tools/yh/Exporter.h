#ifndef YH_TOOL_EXPORTER_H
#define YH_TOOL_EXPORTER_H

#include <string>

#include "Kinds.h"
#include "Library.h"
#include "MediaCopier.h"
#include "OutputFolder.h"
#include "Progress.h"
#include "Render.h"

namespace yh {

// Throws Failure when `out` lies inside the backup, whatever links lead there:
// yh never writes into a backup.
void RefuseInsideBackup(const BackupDevice& device, const std::string& out);

// Writes each kind's answer as <kind>.json and <kind>.csv into the output
// folder and copies the media files the answers name into media/<kind>/.
class Exporter {
 public:
  // `copies`: where answers may name files besides the backup ("" for none).
  Exporter(const Library& library, BackupDevice& device, const std::string& copies, const std::string& out);

  KindExport Export(const Kind& kind);

 private:
  void WriteAnswerFile(const std::string& name, Format format, const Answer& answer);

  const Library& library_;
  BackupDevice& device_;
  OutputFolder out_;
  Progress progress_;
  MediaCopier media_;
};

}  // namespace yh

#endif
