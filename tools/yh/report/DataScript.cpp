#include "DataScript.h"

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
  const Json key = name;
  return "yhData(" + Escaped(key.dump()) + ", " +
         Escaped(data.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)) + ");\n";
}

}  // namespace yh
