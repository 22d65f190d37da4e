#include "common/VCardFields.h"

#include <cctype>

namespace {

// The text with folded lines joined and every line break a single '\n'.
std::string Unfolded(std::string_view text) {
  std::string lines;
  lines.reserve(text.size());
  for (size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c != '\r' && c != '\n') {
      lines += c;
      continue;
    }
    if (c == '\r' && at + 1 < text.size() && text[at + 1] == '\n') ++at;
    if (at + 1 < text.size() && (text[at + 1] == ' ' || text[at + 1] == '\t')) {
      ++at;  // a folded line goes on after its one leading blank
    } else {
      lines += '\n';
    }
  }
  return lines;
}

// The property name of a content line, upper case, without its group
// prefix and parameters; its value after the first ':' that ends them.
struct ContentLine {
  std::string name;
  std::string_view value;
};

ContentLine Parse(std::string_view line) {
  ContentLine parsed;
  const size_t colon = line.find(':');
  if (colon == std::string_view::npos) return parsed;
  std::string_view name = line.substr(0, colon);
  name = name.substr(0, name.find(';'));
  const size_t dot = name.rfind('.');
  if (dot != std::string_view::npos) name = name.substr(dot + 1);
  for (char c : name) parsed.name += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  parsed.value = line.substr(colon + 1);
  return parsed;
}

}  // namespace

VCardFields ReadVCardFields(std::string_view text) {
  VCardFields fields;
  const std::string lines = Unfolded(text);
  size_t start = 0;
  while (start < lines.size()) {
    size_t end = lines.find('\n', start);
    if (end == std::string::npos) end = lines.size();
    const ContentLine line = Parse(std::string_view(lines).substr(start, end - start));
    if (line.name == "FN" && !line.value.empty()) {
      if (!fields.name.empty()) fields.name += ", ";
      fields.name += line.value;
    } else if (line.name == "TEL" && !line.value.empty()) {
      fields.numbers.emplace_back(line.value);
    }
    start = end + 1;
  }
  return fields;
}
