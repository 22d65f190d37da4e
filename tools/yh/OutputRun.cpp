#include "OutputRun.h"

#include "ExportTable.h"
#include "Exporter.h"
#include "Interruption.h"
#include "TerminalText.h"

namespace yh {

int RunOutput(const ExportOptions& options, const std::string& command, const WriteKinds& write, std::ostream& out) {
  const Library library(options.classic);
  const FoundBackup backup = FindBackup(library, options.backup, options.root, options.passwordFile);
  RefuseInsideBackup(*backup.device, options.out);
  CatchInterruptions();
  std::vector<KindExport> results;
  bool resumed = false;
  try {
    UnfinishedMark mark(options.out, command, FolderName(*backup.device), options.resume);
    resumed = mark.Resumed();
    results = write(library, backup, mark);
    mark.Finish();
  } catch (const Interrupted&) {
    throw Failure("interrupted: " + Printable(options.out) + " is incomplete; run the same command with --resume " +
                  "to finish it");
  }
  out << (command == "report" ? "Wrote the report of " : "Exported ") << Describe(*backup.device) << " to "
      << Printable(command == "report" ? options.out + "/index.html" : options.out) << "\n";
  if (resumed) {
    size_t kept = 0;
    for (const KindExport& result : results) kept += result.kept;
    out << "Finished an interrupted " << command << ": " << kept << " files were already copied\n";
  }
  WriteExportTable(out, results);
  return 0;
}

}  // namespace yh
