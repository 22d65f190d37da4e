#ifndef YH_BENCH_TOOL_LIMITCHECK_H
#define YH_BENCH_TOOL_LIMITCHECK_H

#include <string>

namespace bench {

// Runs `yh show BACKUP all` (JSON) and `yh report BACKUP` once with their
// address space limited to `limitMb` and once without, and prints whether
// each run finished and whether both gave the same output byte for byte
// (the standard output; the report's whole folder). True when every run
// finished and the outputs are the same.
bool CheckUnderLimit(const std::string& yh, const std::string& backup, double limitMb);

}  // namespace bench

#endif
