#ifndef YH_BENCH_TOOL_SAMETREE_H
#define YH_BENCH_TOOL_SAMETREE_H

#include <string>

namespace bench {

// True when both files hold the same bytes. A hole reads as the zeros it
// stands for, whichever file has it; bytes are read only where either file
// holds data, so sparse files of any size compare quickly.
bool SameFile(const std::string& a, const std::string& b);

// True when the folders hold the same names at every depth, each of the same
// type, files with the same bytes (SameFile) and links with the same target.
bool SameTree(const std::string& a, const std::string& b);

}  // namespace bench

#endif
