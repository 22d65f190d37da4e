#ifndef YH_TOOL_TERMINALTEXT_H
#define YH_TOOL_TERMINALTEXT_H

#include <cstddef>
#include <string>

namespace yh {

// Text from a backup made safe to print in a message: control characters
// (escape sequences among them) are shown as \xNN.
std::string Printable(const std::string& text);

// Characters a terminal shows for UTF-8 text (one per code point).
size_t DisplayWidth(const std::string& text);

// A table cell: control characters become blanks, and text wider than
// `width` loses its middle to "…".
std::string Cell(std::string text, size_t width);
// The same in place; gives the cell's DisplayWidth.
size_t CutCell(std::string& text, size_t width);

}  // namespace yh

#endif
