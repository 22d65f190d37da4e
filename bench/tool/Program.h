#ifndef YH_BENCH_TOOL_PROGRAM_H
#define YH_BENCH_TOOL_PROGRAM_H

#include <string>
#include <vector>

namespace bench {

// What one run of a program took: wall clock from start to exit, peak
// resident memory.
struct ProgramRun {
  bool ok = false;  // exited with 0
  double ms = 0;
  double peakMb = 0;
};

// Runs `args` (the program's path first) in a child process whose standard
// output and error go to /dev/null.
ProgramRun RunProgram(const std::vector<std::string>& args);

}  // namespace bench

#endif
