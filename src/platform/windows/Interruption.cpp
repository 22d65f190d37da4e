#include "platform/Interruption.h"

#include <windows.h>

#include <atomic>

namespace platform {

namespace {

// Windows ends a program this long after its console is closed; the handler
// waits that long so that the stop can clean up.
constexpr DWORD kCloseGrace = 5000;

std::atomic<bool> stopAsked{false};

// Runs on a thread of its own. FALSE hands the event on to the default
// handler, which ends the program.
BOOL WINAPI AskToStop(DWORD event) {
  const bool again = stopAsked.exchange(true);
  if (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT) return again ? FALSE : TRUE;
  Sleep(kCloseGrace);
  return TRUE;
}

}  // namespace

void NoteStopRequests() { SetConsoleCtrlHandler(AskToStop, TRUE); }

bool StopRequested() { return stopAsked.load(); }

}  // namespace platform
