#include "Interruption.h"

#include "platform/Interruption.h"

namespace yh {

void CatchInterruptions() { platform::NoteStopRequests(); }

void StopIfInterrupted() {
  if (platform::StopRequested()) throw Interrupted();
}

}  // namespace yh
