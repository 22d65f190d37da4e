#ifndef YH_TOOL_INTERRUPTION_H
#define YH_TOOL_INTERRUPTION_H

#include "Failure.h"

namespace yh {

// Thrown at the next safe point after Ctrl-C (SIGINT), SIGTERM or SIGHUP
// once CatchInterruptions was called: files being written are removed as
// the stack unwinds, and so are decrypted copies.
class Interrupted : public Failure {
 public:
  Interrupted() : Failure("interrupted") {}
};

// From now on the three signals ask the program to stop at a safe point; a
// second one ends it at once.
void CatchInterruptions();

// Throws Interrupted when a signal asked to stop.
void StopIfInterrupted();

}  // namespace yh

#endif
