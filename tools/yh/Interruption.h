#ifndef YH_TOOL_INTERRUPTION_H
#define YH_TOOL_INTERRUPTION_H

#include "Failure.h"

namespace yh {

// Thrown at the next safe point after Ctrl-C (SIGINT), SIGTERM or SIGHUP
// (Ctrl-C, Ctrl-Break or closing the console on Windows) once
// CatchInterruptions was called: files being written are removed as
// the stack unwinds, and so are decrypted copies.
class Interrupted : public Failure {
 public:
  Interrupted() : Failure("interrupted") {}
};

// From now on those requests ask the program to stop at a safe point; a
// second one ends it at once.
void CatchInterruptions();

// Throws Interrupted when a request asked to stop.
void StopIfInterrupted();

}  // namespace yh

#endif
