#ifndef YH_TOOL_CSV_H
#define YH_TOOL_CSV_H

#include <ostream>
#include <string>

#include "Flatten.h"

namespace yh {

// A header row, then one line per row. Fields that hold a comma, a quote or a
// line break are quoted, with quotes doubled (RFC 4180, lines end in "\n").
void WriteCsv(std::ostream& out, const Rows& rows);

std::string CsvField(const std::string& text);

}  // namespace yh

#endif
