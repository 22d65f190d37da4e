#include "TextTable.h"

#include <algorithm>
#include <string>
#include <vector>

#include "TerminalText.h"

namespace yh {
namespace {

void WriteLine(std::ostream& out, const std::vector<std::string>& cells, const std::vector<size_t>& widths) {
  std::string line;
  for (size_t i = 0; i < cells.size(); ++i) {
    if (i) line += "  ";
    line += cells[i];
    if (i + 1 < cells.size()) line.append(widths[i] - DisplayWidth(cells[i]), ' ');
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  out << line << '\n';
}

std::vector<std::string> Cut(const std::vector<std::string>& texts) {
  std::vector<std::string> cells;
  for (const std::string& text : texts) cells.push_back(Cell(text, kTableCellWidth));
  return cells;
}

}  // namespace

void WriteTable(std::ostream& out, const Rows& rows) {
  std::vector<std::vector<std::string>> lines{Cut(rows.columns)};
  for (const auto& row : rows.cells) lines.push_back(Cut(row));
  std::vector<size_t> widths(rows.columns.size(), 0);
  for (const auto& line : lines) {
    for (size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], DisplayWidth(line[i]));
  }
  for (const auto& line : lines) WriteLine(out, line, widths);
}

}  // namespace yh
