#include "Exporter.h"

#include <algorithm>
#include <filesystem>

#include "AnswerFile.h"
#include "Failure.h"
#include "TerminalText.h"

namespace yh {

namespace fs = std::filesystem;

void RefuseInsideBackup(const BackupDevice& device, const std::string& out) {
  std::error_code error;
  const fs::path backup = fs::canonical(fs::u8path(Text(device.backupPath)), error);
  if (error) return;
  const fs::path target = fs::weakly_canonical(fs::absolute(fs::u8path(out)), error);
  if (error) return;
  auto [inBackup, inTarget] = std::mismatch(backup.begin(), backup.end(), target.begin(), target.end());
  if (inBackup == backup.end()) {
    throw Failure("--out " + Printable(out) + " lies inside the backup; yh never writes into a backup");
  }
}

bool RecordsWithCopies(const Library& library, BackupDevice& device, const Kind& kind, MediaCopier& media,
                       KindExport& result, Records records, const RecordHandler& record) {
  size_t& count = records == Records::Deleted ? result.deleted.emplace(0) : (result.records = 0);
  const bool given =
      library.Records(device, kind.contentType, records == Records::Deleted, [&](plist_t item) {
        media.CopyOf(kind, item, ++count, result);
        record(item);
      });
  media.FinishProgress();
  return given;
}

Exporter::Exporter(const Library& library, BackupDevice& device, const std::string& copies, UnfinishedMark& mark,
                   bool deleted)
    : library_(library),
      device_(device),
      out_(mark.Folder()),
      resumed_(mark.Resumed()),
      deleted_(deleted),
      media_(Text(device.backupPath), copies, out_, progress_, resumed_) {}

KindExport Exporter::Export(const Kind& kind) {
  KindExport result{&kind};
  WriteAnswerFiles(kind.name, kind, result, Records::Live);
  if (deleted_) WriteAnswerFiles(kind.name + "-deleted", kind, result, Records::Deleted);
  return result;
}

void Exporter::WriteAnswerFiles(const std::string& name, const Kind& kind, KindExport& result, Records records) {
  AnswerFile json(out_, name + ".json", resumed_);
  AnswerFile csv(out_, name + ".csv", resumed_);
  RecordsWriter jsonRecords(json.Stream(), Format::Json, kind);
  RecordsWriter csvRecords(csv.Stream(), Format::Csv, kind);
  const bool given = RecordsWithCopies(library_, device_, kind, media_, result, records, [&](plist_t record) {
    jsonRecords.Add(record);
    csvRecords.Add(record);
  });
  jsonRecords.Finish(given);
  json.Keep();
  csvRecords.Finish(given);
  csv.Keep();
}

}  // namespace yh
