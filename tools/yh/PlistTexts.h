#ifndef YH_TOOL_PLISTTEXTS_H
#define YH_TOOL_PLISTTEXTS_H

#include <plist/plist.h>

#include <string>

namespace yh {

// A date node as an ISO 8601 text in UTC, to the second.
std::string DateText(plist_t node);

// A data node's bytes as Base64 (RFC 4648, padded, one line).
std::string DataText(plist_t node);

}  // namespace yh

#endif
