#include "LimitCheck.h"

#include <cstdio>
#include <vector>

#include "Program.h"
#include "SameTree.h"
#include "TempFolder.h"

namespace bench {

namespace {

// A command whose output is what it writes to standard output, or the
// folder it writes with --out.
struct Command {
  const char* name;
  std::vector<std::string> args;
  bool writesFolder;
};

std::string Described(const ProgramRun& run) {
  char text[64];
  std::snprintf(text, sizeof text, "%s %6.0f ms %5.0f MB", run.ok ? "finished" : "FAILED  ", run.ms, run.peakMb);
  return text;
}

// Runs `command` limited and unlimited and prints a line; true when both
// finished with the same output.
bool Check(const Command& command, double limitMb) {
  const TempFolder folder;
  std::vector<ProgramRun> runs;
  std::vector<std::string> outputs;
  for (const double limit : {limitMb, 0.0}) {
    outputs.push_back(folder / (limit > 0 ? "limited" : "unlimited"));
    std::vector<std::string> args = command.args;
    RunOptions options{"", limit};
    if (command.writesFolder) {
      args.insert(args.end(), {"--out", outputs.back()});
    } else {
      options.output = outputs.back();
    }
    runs.push_back(RunProgram(args, options));
  }
  const bool finished = runs[0].ok && runs[1].ok;
  const bool same = finished && (command.writesFolder ? SameTree(outputs[0], outputs[1])
                                                      : SameFile(outputs[0], outputs[1]));
  std::printf("%-28s %-30s %-30s %s\n", command.name, Described(runs[0]).c_str(), Described(runs[1]).c_str(),
              !finished ? "not compared" : same ? "same" : "DIFFERENT");
  return same;
}

}  // namespace

bool CheckUnderLimit(const std::string& yh, const std::string& backup, double limitMb) {
  std::printf("address space limited to %.0f MB (RLIMIT_AS), then unlimited\n", limitMb);
  std::printf("%-28s %-30s %-30s %s\n", "", "limited", "unlimited", "output");
  const bool shown = Check({"yh show all --format json", {yh, "show", backup, "all", "--format", "json"}, false},
                           limitMb);
  const bool reported = Check({"yh report", {yh, "report", backup}, true}, limitMb);
  return shown && reported;
}

}  // namespace bench
