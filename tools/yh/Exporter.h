#ifndef YH_TOOL_EXPORTER_H
#define YH_TOOL_EXPORTER_H

#include <string>

#include "Kinds.h"
#include "Library.h"
#include "MediaCopier.h"
#include "Progress.h"
#include "Render.h"
#include "UnfinishedMark.h"

namespace yh {

// Throws Failure when `out` lies inside the backup, whatever links lead there:
// yh never writes into a backup.
void RefuseInsideBackup(const BackupDevice& device, const std::string& out);

// Which records of a kind an answer holds.
enum class Records { Live, Deleted };

// Copies the media files a kind's answer names into media/<kind>/ (a
// message's attachments into media/attachments/, a contact's picture into
// media/contacts/), gives each record that names a file its copy's path, and
// returns the answer. Counts its records (as `records`, or `deleted` for
// deleted ones) and its files into `result`.
Plist AnswerWithCopies(const Library& library, BackupDevice& device, const Kind& kind, MediaCopier& media,
                       KindExport& result, Records records = Records::Live);

// Writes each kind's answer, with the paths of the copies, as <kind>.json
// and <kind>.csv into the output folder; with `deleted`, the records the
// owner deleted too, as <kind>-deleted.json and <kind>-deleted.csv.
class Exporter {
 public:
  // `copies`: where answers may name files besides the backup ("" for none).
  Exporter(const Library& library, BackupDevice& device, const std::string& copies, UnfinishedMark& mark,
           bool deleted);

  KindExport Export(const Kind& kind);

 private:
  // NAME.json and NAME.csv.
  void WriteAnswerFiles(const std::string& name, const Answer& answer);
  void WriteAnswerFile(const std::string& name, Format format, const Answer& answer);

  const Library& library_;
  BackupDevice& device_;
  OutputFolder& out_;
  bool resumed_;
  bool deleted_;
  Progress progress_;
  MediaCopier media_;
};

}  // namespace yh

#endif
