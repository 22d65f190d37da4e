#ifndef YH_TOOL_REPORT_DATASCRIPT_H
#define YH_TOOL_REPORT_DATASCRIPT_H

#include <string>

#include "PlistJson.h"

namespace yh {

// A data file of the report: a script that hands `data` to the page as
// `yhData("NAME", DATA);`. A page opened from disk cannot fetch JSON, but
// it can load scripts. The JSON text escapes "<", ">", "&", U+2028 and
// U+2029, so that no text of a backup can end the script or read as markup
// wherever it is placed; bytes that are not UTF-8 become U+FFFD.
std::string DataScript(const std::string& name, const Json& data);

}  // namespace yh

#endif
