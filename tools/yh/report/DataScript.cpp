#include "DataScript.h"

#include <sstream>

namespace yh {
namespace {

// Outside strings JSON holds none of these, so each is escaped as a string
// character.
std::string Escaped(const std::string& json) {
  std::string text;
  text.reserve(json.size() + json.size() / 16);
  for (size_t i = 0; i < json.size(); ++i) {
    const char c = json[i];
    if (c == '<') {
      text += "\\u003c";
    } else if (c == '>') {
      text += "\\u003e";
    } else if (c == '&') {
      text += "\\u0026";
    } else if (c == '\xE2' && i + 2 < json.size() && json[i + 1] == '\x80' &&
               (json[i + 2] == '\xA8' || json[i + 2] == '\xA9')) {
      text += json[i + 2] == '\xA8' ? "\\u2028" : "\\u2029";
      i += 2;
    } else {
      text += c;
    }
  }
  return text;
}

}  // namespace

std::string DataScript(const std::string& name, const Json& data) {
  std::ostringstream out;
  DataScriptWriter script(out, name);
  script.Value(data);
  script.Finish();
  return out.str();
}

DataScriptWriter::DataScriptWriter(std::ostream& out, const std::string& name) : out_(out) {
  out_ << "yhData(" << Escaped(Json(name).dump()) << ", ";
}

void DataScriptWriter::Punctuation(std::string_view text) { out_ << text; }

void DataScriptWriter::Value(const Json& value) {
  out_ << Escaped(value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

void DataScriptWriter::Finish() { out_ << ");\n"; }

}  // namespace yh
