#ifndef YH_BENCH_COMMON_BACKUPFOLDER_H
#define YH_BENCH_COMMON_BACKUPFOLDER_H

#include <string>

namespace bench {

// The path, ending in "/", of the first backup folder (one that holds an
// index) in `folder`; "" when there is none.
std::string BackupIn(const std::string& folder);

}  // namespace bench

#endif
