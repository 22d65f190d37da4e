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

// Where a run's output goes and what it may take.
struct RunOptions {
  std::string output;  // the file standard output is written to; /dev/null when empty
  double limitMb = 0;  // its address space (RLIMIT_AS), unlimited when 0
};

// Runs `args` (the program's path or a name found in PATH first) in a child
// process whose standard error goes to /dev/null.
ProgramRun RunProgram(const std::vector<std::string>& args, const RunOptions& options = {});

}  // namespace bench

#endif
