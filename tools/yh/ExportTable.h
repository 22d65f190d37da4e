#ifndef YH_TOOL_EXPORTTABLE_H
#define YH_TOOL_EXPORTTABLE_H

#include <ostream>
#include <vector>

#include "MediaCopier.h"

namespace yh {

// Records, files copied, bytes and files skipped per kind, then the totals.
void WriteExportTable(std::ostream& out, const std::vector<KindExport>& results);

}  // namespace yh

#endif
