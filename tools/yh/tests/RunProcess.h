#ifndef YH_TOOL_TESTS_RUNPROCESS_H
#define YH_TOOL_TESTS_RUNPROCESS_H

#include <string>
#include <vector>

namespace yhtool {

struct YhResult;

// The caller's environment as "NAME=value" entries.
std::vector<std::string> CurrentEnvironment();

// Runs the program at argv[0] with `argv` and the environment `env`, with
// standard input empty; gathers both output streams and the exit code (-1
// when the program did not end by exiting). One implementation per system.
YhResult RunProcess(const std::vector<std::string>& argv, const std::vector<std::string>& env);

}  // namespace yhtool

#endif
