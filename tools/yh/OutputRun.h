#ifndef YH_TOOL_OUTPUTRUN_H
#define YH_TOOL_OUTPUTRUN_H

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "BackupFinder.h"
#include "Commands.h"
#include "MediaCopier.h"
#include "UnfinishedMark.h"

namespace yh {

// Writes a backup's kinds into a folder.
using WriteKinds = std::function<std::vector<KindExport>(const Library& library, const FoundBackup& backup,
                                                         UnfinishedMark& mark)>;

// What yh export and yh report share: the backup found (and unlocked), an
// --out outside it claimed (see UnfinishedMark), the mark removed once
// `write` is done. Ctrl-C stops at a safe point with a message saying how to
// finish. Returns the exit code; the summary goes to `out`.
int RunOutput(const ExportOptions& options, const std::string& command, const WriteKinds& write, std::ostream& out);

}  // namespace yh

#endif
