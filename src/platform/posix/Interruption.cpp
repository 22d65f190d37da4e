#include "platform/Interruption.h"

#include <signal.h>

#include <initializer_list>

namespace platform {

namespace {

volatile sig_atomic_t stopAsked = 0;

void AskToStop(int) { stopAsked = 1; }

}  // namespace

void NoteStopRequests() {
  struct sigaction action {};
  action.sa_handler = AskToStop;
  // SA_RESETHAND: the second signal takes its default action and ends the program.
  action.sa_flags = SA_RESETHAND;
  sigemptyset(&action.sa_mask);
  for (int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

bool StopRequested() { return stopAsked != 0; }

}  // namespace platform
