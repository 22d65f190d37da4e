#include "BackupFinder.h"
#include "Commands.h"

namespace yh {

int RunShow(const ShowOptions& options, std::ostream& out) {
  const Library library(options.classic);
  const FoundBackup backup = FindBackup(library, options.backup, options.root, options.passwordFile);
  const std::vector<const Kind*> kinds = SelectKinds({options.kind});
  const RecordsOf recordsOf = [&](const Kind& kind, const RecordHandler& record) {
    return library.Records(*backup.device, kind.contentType, options.deleted, record);
  };
  if (options.kind == kAllKinds) {
    WriteAnswers(out, options.format, kinds, recordsOf);
  } else {
    WriteRecords(out, options.format, *kinds.front(), recordsOf);
  }
  return 0;
}

}  // namespace yh
