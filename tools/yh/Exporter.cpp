#include "Exporter.h"

#include <algorithm>
#include <filesystem>

#include "Failure.h"
#include "FileStream.h"
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

Plist AnswerWithCopies(const Library& library, BackupDevice& device, const Kind& kind, MediaCopier& media,
                       KindExport& result, Records records) {
  Plist answer = records == Records::Deleted ? library.Deleted(device, kind.contentType)
                                             : library.Content(device, kind.contentType);
  const size_t count = RecordCount(answer.get());
  if (records == Records::Deleted) {
    result.deleted = count;
  } else {
    result.records = count;
  }
  if (kind.IsMedia()) media.Copy(kind, answer.get(), result);
  if (!kind.picturePathKey.empty()) media.CopyPictures(kind, answer.get(), result);
  if (kind.name == "messages") media.CopyMessageAttachments(answer.get());
  return answer;
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
  WriteAnswerFiles(kind.name, {&kind, AnswerWithCopies(library_, device_, kind, media_, result)});
  if (deleted_) {
    WriteAnswerFiles(kind.name + "-deleted",
                     {&kind, AnswerWithCopies(library_, device_, kind, media_, result, Records::Deleted)});
  }
  return result;
}

void Exporter::WriteAnswerFiles(const std::string& name, const Answer& answer) {
  WriteAnswerFile(name + ".json", Format::Json, answer);
  WriteAnswerFile(name + ".csv", Format::Csv, answer);
}

// An interrupted run wrote the same answer under the same name, whole.
void Exporter::WriteAnswerFile(const std::string& name, Format format, const Answer& answer) {
  const std::string own = out_.Reserve(name);
  if (resumed_ && out_.Holds(own)) return;
  OutputFolder::NewFile file = out_.Create(own);
  FileStream stream(file.Fd(), file.Path());
  WriteAnswer(stream, format, answer);
  stream.Finish();
  file.Keep();
}

}  // namespace yh
