#ifndef YH_TOOL_TESTS_DEFAULTLOCATION_H
#define YH_TOOL_TESTS_DEFAULTLOCATION_H

#include <string>
#include <vector>

namespace yhtool {

// Where yh looks for backups when no --root is given, moved below a test's
// folder (which ends in "/"): the environment entries that move it, and the
// folders yh then looks in, in its order. One implementation per system.
struct DefaultLocation {
  std::vector<std::string> env;
  std::vector<std::string> folders;
};
DefaultLocation DefaultLocationIn(const std::string& folder);

// The environment entries under which yh finds the sample backups without
// --root.
std::vector<std::string> SamplesByDefault();

}  // namespace yhtool

#endif
