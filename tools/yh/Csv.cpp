#include "Csv.h"

namespace yh {
namespace {

void WriteLine(std::ostream& out, const std::vector<std::string>& fields) {
  for (size_t i = 0; i < fields.size(); ++i) out << (i ? "," : "") << CsvField(fields[i]);
  out << '\n';
}

}  // namespace

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

void WriteCsv(std::ostream& out, const Rows& rows) {
  WriteLine(out, rows.columns);
  for (const auto& row : rows.cells) WriteLine(out, row);
}

}  // namespace yh
