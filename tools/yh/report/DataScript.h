#ifndef YH_TOOL_REPORT_DATASCRIPT_H
#define YH_TOOL_REPORT_DATASCRIPT_H

#include <ostream>
#include <string>
#include <string_view>

#include "PlistJson.h"

namespace yh {

// A data file of the report: a script that hands `data` to the page as
// `yhData("NAME", DATA);`. A page opened from disk cannot fetch JSON, but
// it can load scripts. The JSON text escapes "<", ">", "&", U+2028 and
// U+2029, so that no text of a backup can end the script or read as markup
// wherever it is placed; bytes that are not UTF-8 become U+FFFD.
std::string DataScript(const std::string& name, const Json& data);

// The same script written a part at a time, so that a long list need not be
// held: JSON punctuation as it is, values as DataScript writes them.
class DataScriptWriter {
 public:
  // Writes the script's head.
  DataScriptWriter(std::ostream& out, const std::string& name);

  // Punctuation between values ("{\"records\":[", ",", "]}"): no text of a
  // backup.
  void Punctuation(std::string_view text);
  void Value(const Json& value);
  // Writes the script's end.
  void Finish();

 private:
  std::ostream& out_;
};

}  // namespace yh

#endif
