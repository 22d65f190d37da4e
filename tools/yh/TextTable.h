#ifndef YH_TOOL_TEXTTABLE_H
#define YH_TOOL_TEXTTABLE_H

#include <cstddef>
#include <ostream>

#include "Flatten.h"

namespace yh {

// Cells wider than this are cut in a table.
constexpr size_t kTableCellWidth = 40;

// Aligned columns for a terminal: the header, then the rows; columns two
// blanks apart, no blanks at the end of a line. The rows are taken, so that
// their cells are cut where they lie.
void WriteTable(std::ostream& out, Rows rows);

}  // namespace yh

#endif
