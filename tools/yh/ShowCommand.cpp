#include "BackupFinder.h"
#include "Commands.h"

namespace yh {

int RunShow(const ShowOptions& options, std::ostream& out) {
  const Library library(options.classic);
  const FoundBackup backup = FindBackup(library, options.backup, options.root, options.passwordFile);
  const std::vector<const Kind*> kinds = SelectKinds({options.kind});
  const AnswerOf answerOf = [&](const Kind& kind) {
    return options.deleted ? library.Deleted(*backup.device, kind.contentType)
                           : library.Content(*backup.device, kind.contentType);
  };
  if (options.kind == kAllKinds) {
    WriteAnswers(out, options.format, kinds, answerOf);
  } else {
    WriteAnswer(out, options.format, {kinds.front(), answerOf(*kinds.front())});
  }
  return 0;
}

}  // namespace yh
