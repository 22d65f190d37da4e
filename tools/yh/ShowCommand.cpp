#include "BackupFinder.h"
#include "Commands.h"

namespace yh {

int RunShow(const ShowOptions& options, std::ostream& out) {
  const Library library(options.classic);
  const FoundBackup backup = FindBackup(library, options.backup, options.root, options.passwordFile);
  const std::vector<const Kind*> kinds = SelectKinds({options.kind});
  std::vector<Answer> answers;
  for (const Kind* kind : kinds) answers.push_back({kind, library.Content(*backup.device, kind->contentType)});
  if (options.kind == kAllKinds) {
    WriteAnswers(out, options.format, answers);
  } else {
    WriteAnswer(out, options.format, answers.front());
  }
  return 0;
}

}  // namespace yh
