#include "BackupFinder.h"
#include "Commands.h"
#include "ExportTable.h"
#include "Exporter.h"
#include "ReportWriter.h"
#include "TerminalText.h"

namespace yh {

int RunReport(const ReportOptions& options, std::ostream& out) {
  const Library library(options.classic);
  const FoundBackup backup = FindBackup(library, options.backup, options.root, options.passwordFile);
  RefuseInsideBackup(*backup.device, options.out);
  std::vector<KindExport> results;
  {
    ReportWriter report(library, *backup.device, backup.CopiesFolder(), options.out);
    Progress progress;
    const std::vector<const Kind*> kinds = SelectKinds(options.kinds);
    for (size_t i = 0; i < kinds.size(); ++i) {
      progress.Show("reading " + kinds[i]->name, i, kinds.size(), "kinds");
      results.push_back(report.Add(*kinds[i]));
    }
    progress.Show("report", kinds.size(), kinds.size(), "kinds");
    report.Finish();
  }
  out << "Wrote the report of " << Describe(*backup.device) << " to " << Printable(options.out + "/index.html")
      << "\n";
  WriteExportTable(out, results);
  return 0;
}

}  // namespace yh
