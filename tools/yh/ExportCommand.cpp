#include "Commands.h"
#include "Exporter.h"
#include "OutputRun.h"

namespace yh {

int RunExport(const ExportOptions& options, std::ostream& out) {
  return RunOutput(
      options, "export",
      [&](const Library& library, const FoundBackup& backup, UnfinishedMark& mark) {
        std::vector<KindExport> results;
        Exporter exporter(library, *backup.device, backup.CopiesFolder(), mark, options.deleted);
        for (const Kind* kind : SelectKinds(options.kinds)) results.push_back(exporter.Export(*kind));
        return results;
      },
      out);
}

}  // namespace yh
