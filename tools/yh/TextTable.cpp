#include "TextTable.h"

#include <algorithm>
#include <string>
#include <vector>

#include "TerminalText.h"

namespace yh {
namespace {

void WriteLine(std::ostream& out, std::string& line, const std::vector<std::string>& cells,
               const std::vector<size_t>& widths) {
  line.clear();
  for (size_t i = 0; i < cells.size(); ++i) {
    if (i) line += "  ";
    line += cells[i];
    if (i + 1 < cells.size()) line.append(widths[i] - DisplayWidth(cells[i]), ' ');
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  line += '\n';
  out.write(line.data(), static_cast<std::streamsize>(line.size()));
}

}  // namespace

void WriteTable(std::ostream& out, Rows rows) {
  // Cut in place: a kind's rows are held once, not twice.
  std::vector<size_t> widths(rows.columns.size(), 0);
  const auto cut = [&widths](std::vector<std::string>& line) {
    for (size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], CutCell(line[i], kTableCellWidth));
  };
  cut(rows.columns);
  for (auto& row : rows.cells) cut(row);
  std::string line;
  WriteLine(out, line, rows.columns, widths);
  for (const auto& row : rows.cells) WriteLine(out, line, row, widths);
}

}  // namespace yh
