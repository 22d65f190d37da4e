#include "BackupFinder.h"
#include "Commands.h"
#include "Exporter.h"
#include "ExportTable.h"
#include "TerminalText.h"

namespace yh {

int RunExport(const ExportOptions& options, std::ostream& out) {
  const Library library(options.classic);
  const FoundBackup backup = FindBackup(library, options.backup, options.root, options.passwordFile);
  RefuseInsideBackup(*backup.device, options.out);
  std::vector<KindExport> results;
  {
    Exporter exporter(library, *backup.device, backup.CopiesFolder(), options.out);
    for (const Kind* kind : SelectKinds(options.kinds)) results.push_back(exporter.Export(*kind));
  }
  out << "Exported " << Describe(*backup.device) << " to " << Printable(options.out) << "\n";
  WriteExportTable(out, results);
  return 0;
}

}  // namespace yh
