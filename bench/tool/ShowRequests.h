#ifndef YH_BENCH_TOOL_SHOWREQUESTS_H
#define YH_BENCH_TOOL_SHOWREQUESTS_H

#include <string>

namespace bench {

// The library alone making the requests `yh show BACKUP all` makes, through
// the current service: finding the backups in `folder`, analysing the one
// found, then every content type once, each answer freed before the next
// request. False when no backup is found or its analysis fails.
bool MakeShowRequests(const std::string& folder);

}  // namespace bench

#endif
