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

// Hands each record of a kind's answer (or of its deleted answer) to
// `record` once the media files it names are copied into media/<kind>/ (a
// message's attachments into media/attachments/, a contact's picture into
// media/contacts/), each record that names a file naming its copy. Counts
// the records (as `records`, or `deleted` for deleted ones) and their files
// into `result`; false when the answer would be NULL.
bool RecordsWithCopies(const Library& library, BackupDevice& device, const Kind& kind, MediaCopier& media,
                       KindExport& result, Records records, const RecordHandler& record);

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
  // NAME.json and NAME.csv, written in one walk of the records.
  void WriteAnswerFiles(const std::string& name, const Kind& kind, KindExport& result, Records records);

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
