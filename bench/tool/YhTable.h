#ifndef YH_BENCH_TOOL_YHTABLE_H
#define YH_BENCH_TOOL_YHTABLE_H

#include <vector>

#include "YhRound.h"

namespace bench {

// Prints the medians of the rounds with their least and greatest values,
// and each yh run against its targets: time at most 1.2 times the library's
// array answers (yh export: their time plus the copy's), peak at most 1.5
// times AnalyzeBackup's plus 40 MB.
void PrintYhTable(const std::vector<YhRound>& rounds);

}  // namespace bench

#endif
