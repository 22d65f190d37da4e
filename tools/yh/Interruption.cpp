#include "Interruption.h"

#include <signal.h>

namespace yh {
namespace {

volatile sig_atomic_t stopAsked = 0;

void AskToStop(int) { stopAsked = 1; }

}  // namespace

void CatchInterruptions() {
  struct sigaction action {};
  action.sa_handler = AskToStop;
  // SA_RESETHAND: the second signal takes its default action and ends yh.
  action.sa_flags = SA_RESETHAND;
  sigemptyset(&action.sa_mask);
  for (int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

void StopIfInterrupted() {
  if (stopAsked) throw Interrupted();
}

}  // namespace yh
