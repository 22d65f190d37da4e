#ifndef YH_TOOL_PLISTJSON_H
#define YH_TOOL_PLISTJSON_H

#include <plist/plist.h>

#include <nlohmann/json.hpp>
#include <string>

namespace yh {

using Json = nlohmann::ordered_json;

// The JSON form of a plist tree: dictionaries keep their key order, unsigned
// integers stay integers, booleans and reals keep their type; dates become
// ISO 8601 texts in UTC and data Base64 texts. NULL becomes null.
Json ToJson(plist_t node);

// JSON text with two-space indentation; bytes that are not UTF-8 become U+FFFD.
std::string JsonText(const Json& json);

// The text of one node for a CSV or table cell: strings as they are, every
// other node as its compact JSON text.
std::string CellText(plist_t node);

}  // namespace yh

#endif
