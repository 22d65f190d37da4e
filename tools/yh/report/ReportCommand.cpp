#include "Commands.h"
#include "OutputRun.h"
#include "ReportWriter.h"

namespace yh {

int RunReport(const ReportOptions& options, std::ostream& out) {
  return RunOutput(
      options, "report",
      [&](const Library& library, const FoundBackup& backup, UnfinishedMark& mark) {
        std::vector<KindExport> results;
        ReportWriter report(library, *backup.device, backup.CopiesFolder(), mark, options.deleted);
        Progress progress;
        const std::vector<const Kind*> kinds = SelectKinds(options.kinds);
        for (size_t i = 0; i < kinds.size(); ++i) {
          progress.Show("reading " + kinds[i]->name, i, kinds.size(), "kinds");
          results.push_back(report.Add(*kinds[i]));
        }
        progress.Show("report", kinds.size(), kinds.size(), "kinds");
        report.Finish();
        return results;
      },
      out);
}

}  // namespace yh
