#ifndef YH_TOOL_FAILURE_H
#define YH_TOOL_FAILURE_H

#include <stdexcept>

namespace yh {

// A command that cannot be done (nothing found, a backup that cannot be read,
// an export that cannot be written). The message says which and why; yh
// exits with 1.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace yh

#endif
