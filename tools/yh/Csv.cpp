#include "Csv.h"

namespace yh {
namespace {

void AppendField(std::string& line, const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    line += text;
    return;
  }
  line += '"';
  for (char c : text) {
    if (c == '"') line += '"';
    line += c;
  }
  line += '"';
}

// Each line is made whole, then written at once: the stream under yh's
// output takes a lock and a call for every piece it is given.
void WriteLine(std::ostream& out, std::string& line, const std::vector<std::string>& fields) {
  line.clear();
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i) line += ',';
    AppendField(line, fields[i]);
  }
  line += '\n';
  out.write(line.data(), static_cast<std::streamsize>(line.size()));
}

}  // namespace

std::string CsvField(const std::string& text) {
  std::string field;
  AppendField(field, text);
  return field;
}

void WriteCsv(std::ostream& out, const Rows& rows) {
  std::string line;
  WriteLine(out, line, rows.columns);
  for (const auto& row : rows.cells) WriteLine(out, line, row);
}

}  // namespace yh
