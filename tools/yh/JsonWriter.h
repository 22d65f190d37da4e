#ifndef YH_TOOL_JSONWRITER_H
#define YH_TOOL_JSONWRITER_H

#include <plist/plist.h>

#include <ostream>
#include <string>

namespace yh {

// Writes the JSON of a plist tree while walking it: the bytes of
// JsonText(ToJson(node)) without making the JSON value first. `depth` is the
// level the node stands at, two blanks of indentation each.
void WriteJson(std::ostream& out, plist_t node, int depth = 0);

// A JSON object written one member at a time, laid out as JsonText lays out
// the whole object, so that no member needs to be kept once written.
class JsonObjectWriter {
 public:
  explicit JsonObjectWriter(std::ostream& out) : out_(out) {}

  void Add(const std::string& key, plist_t value);
  // Closes the object; a line end is the caller's.
  void Finish();

 private:
  std::ostream& out_;
  bool empty_ = true;
};

}  // namespace yh

#endif
