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
  const fs::path backup = fs::canonical(Text(device.backupPath), error);
  if (error) return;
  const fs::path target = fs::weakly_canonical(fs::absolute(out), error);
  if (error) return;
  auto [inBackup, inTarget] = std::mismatch(backup.begin(), backup.end(), target.begin(), target.end());
  if (inBackup == backup.end()) {
    throw Failure("--out " + Printable(out) + " lies inside the backup; yh never writes into a backup");
  }
}

Exporter::Exporter(const Library& library, BackupDevice& device, const std::string& copies,
                   const std::string& out)
    : library_(library),
      device_(device),
      out_(OutputFolder::Open(out)),
      media_(Text(device.backupPath), copies, out_, progress_) {}

KindExport Exporter::Export(const Kind& kind) {
  const Answer answer{&kind, library_.Content(device_, kind.contentType)};
  KindExport result{&kind};
  result.records = RecordCount(answer.tree.get());
  WriteAnswerFile(kind.name + ".json", Format::Json, answer);
  WriteAnswerFile(kind.name + ".csv", Format::Csv, answer);
  if (kind.IsMedia()) media_.Copy(kind, answer.tree.get(), result);
  return result;
}

void Exporter::WriteAnswerFile(const std::string& name, Format format, const Answer& answer) {
  const OutputFolder::NewFile file = out_.Create(name);
  FileStream stream(file.fd.Get(), out_.Path() + "/" + file.name);
  WriteAnswer(stream, format, answer);
  stream.Finish();
}

}  // namespace yh
