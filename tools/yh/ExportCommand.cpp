#include <algorithm>
#include <filesystem>

#include "BackupFinder.h"
#include "Commands.h"
#include "Exporter.h"
#include "Failure.h"
#include "Flatten.h"
#include "TerminalText.h"
#include "TextTable.h"

namespace yh {
namespace {

namespace fs = std::filesystem;

// The export must never land in the backup, whatever links lead there.
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

void WriteSummary(std::ostream& out, const BackupDevice& device, const std::string& folder,
                  const std::vector<KindExport>& results) {
  Rows rows{{"kind", "records", "files", "bytes", "skipped"}, {}};
  KindExport total{nullptr};
  for (const KindExport& result : results) {
    total.records += result.records;
    total.files += result.files;
    total.bytes += result.bytes;
    total.skipped += result.skipped;
    if (!result.kind->IsMedia()) {
      rows.cells.push_back({result.kind->name, std::to_string(result.records), "-", "-", "-"});
      continue;
    }
    rows.cells.push_back({result.kind->name, std::to_string(result.records), std::to_string(result.files),
                          std::to_string(result.bytes), std::to_string(result.skipped)});
  }
  rows.cells.push_back({"total", std::to_string(total.records), std::to_string(total.files),
                        std::to_string(total.bytes), std::to_string(total.skipped)});
  out << "Exported " << Describe(device) << " to " << Printable(folder) << "\n";
  WriteTable(out, rows);
}

}  // namespace

int RunExport(const ExportOptions& options, std::ostream& out) {
  const Library library;
  const FoundBackup backup = FindBackup(library, options.backup, options.root);
  RefuseInsideBackup(*backup.device, options.out);
  std::vector<KindExport> results;
  {
    Exporter exporter(library, *backup.device, options.out);
    for (const Kind* kind : SelectKinds(options.kinds)) results.push_back(exporter.Export(*kind));
  }
  WriteSummary(out, *backup.device, options.out, results);
  return 0;
}

}  // namespace yh
