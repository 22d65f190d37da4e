#include "support/ForensicAnswerKey.h"

#include <algorithm>

namespace yhtest {
namespace {

std::string Unescape(const std::string& text) {
  static const std::pair<const char*, const char*> kEntities[] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}};
  std::string out;
  for (size_t i = 0; i < text.size();) {
    bool replaced = false;
    for (const auto& [entity, character] : kEntities) {
      if (text.compare(i, std::char_traits<char>::length(entity), entity) == 0) {
        out += character;
        i += std::char_traits<char>::length(entity);
        replaced = true;
        break;
      }
    }
    if (!replaced) out.push_back(text[i++]);
  }
  return out;
}

// The text between <tag> and </tag> after `from`, and where it ends.
bool Between(const std::string& xml, size_t from, size_t limit, const std::string& tag, std::string* text,
             size_t* end) {
  const std::string open = "<" + tag + ">";
  const size_t start = xml.find(open, from);
  if (start == std::string::npos || start >= limit) return false;
  const size_t close = xml.find("</" + tag + ">", start);
  if (close == std::string::npos) return false;
  *text = Unescape(xml.substr(start + open.size(), close - start - open.size()));
  *end = close;
  return true;
}

// The next <row> or <row deleted="1"> (not <rowsTotal> and the like).
size_t NextRow(const std::string& xml, size_t from) {
  return std::min(xml.find("<row>", from), xml.find("<row ", from));
}

}  // namespace

std::vector<AnswerRow> ReadAnswerKey(const std::string& xml) {
  std::vector<AnswerRow> rows;
  size_t element = xml.find("<element>");
  while (element != std::string::npos) {
    const size_t next = xml.find("<element>", element + 1);
    const size_t limit = next == std::string::npos ? xml.size() : next;
    std::string table;
    size_t end = 0;
    if (Between(xml, element, limit, "name", &table, &end)) {
      for (size_t row = NextRow(xml, element); row != std::string::npos && row < limit;
           row = NextRow(xml, row + 1)) {
        const size_t rowEnd = std::min(xml.find("</row>", row), limit);
        AnswerRow answer{table, {}, xml.compare(row, 17, "<row deleted=\"1\">") == 0};
        for (size_t column = xml.find("<column>", row); column < rowEnd; column = xml.find("<column>", column + 1)) {
          const size_t columnEnd = xml.find("</column>", column);
          std::string content;
          size_t contentEnd = 0;
          if (!Between(xml, column, columnEnd, "content", &content, &contentEnd)) content.clear();
          answer.contents.push_back(content);
        }
        rows.push_back(std::move(answer));
      }
    }
    element = next;
  }
  return rows;
}

}  // namespace yhtest
