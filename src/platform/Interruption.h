#ifndef YH_PLATFORM_INTERRUPTION_H
#define YH_PLATFORM_INTERRUPTION_H

// A command-line program's requests to stop: Ctrl-C, SIGTERM and SIGHUP on
// POSIX systems; Ctrl-C, Ctrl-Break and closing the console on Windows.
namespace platform {

// From now on the first request to stop is only noted, for the program to
// act on at a safe point; a second one ends the program at once.
void NoteStopRequests();

// Whether a request to stop came since NoteStopRequests.
bool StopRequested();

}  // namespace platform

#endif
