#ifndef YH_TOOL_EXPORTTABLE_H
#define YH_TOOL_EXPORTTABLE_H

#include <ostream>
#include <vector>

#include "MediaCopier.h"

namespace yh {

// Records, deleted records (when any result asked for them), files copied,
// bytes, files skipped and records without a file in the backup per kind,
// then the totals.
void WriteExportTable(std::ostream& out, const std::vector<KindExport>& results);

}  // namespace yh

#endif
