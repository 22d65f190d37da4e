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

  // Starts a member whose value the caller writes next, at depth 1.
  void Key(const std::string& key);
  // Closes the object; a line end is the caller's.
  void Finish();

 private:
  std::ostream& out_;
  bool empty_ = true;
};

// A JSON array written one element at a time, laid out as WriteJson lays
// out the whole array standing at `depth`.
class JsonArrayWriter {
 public:
  JsonArrayWriter(std::ostream& out, int depth) : out_(out), depth_(depth) {}

  void Add(plist_t element);
  // Closes the array ("[]" when nothing was added).
  void Finish();

 private:
  std::ostream& out_;
  int depth_;
  bool empty_ = true;
};

}  // namespace yh

#endif
