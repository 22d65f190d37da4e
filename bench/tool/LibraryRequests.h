#ifndef YH_BENCH_TOOL_LIBRARYREQUESTS_H
#define YH_BENCH_TOOL_LIBRARYREQUESTS_H

#include <string>

#include "Program.h"

namespace bench {

// How far the library goes on a backup.
enum class Requests {
  Analysis,  // finding the backups and AnalyzeBackup of the one found
  ShowAll,   // then every content type once as an array answer, as `yh show BACKUP all` asks
};

// The library alone, through the current service as yh uses it, on the first
// backup in `folder`; each answer is freed before the next request. False
// when no backup is found or its analysis fails.
bool MakeRequests(const std::string& folder, Requests requests);

// MakeRequests in a child process of its own, timed from fork to exit.
ProgramRun RunLibrary(const std::string& folder, Requests requests);

}  // namespace bench

#endif
