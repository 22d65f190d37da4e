#ifndef YH_BENCH_TOOL_YHROUND_H
#define YH_BENCH_TOOL_YHROUND_H

#include <string>
#include <vector>

#include "Program.h"

namespace bench {

// The runs of one round, each in a child process of its own.
struct YhRound {
  ProgramRun analysis;  // the library: AnalyzeBackup alone
  ProgramRun library;   // the library: the array answers `yh show all` asks for
  ProgramRun copy;      // cp -r of the media folder `yh export` wrote, into a new folder
  std::vector<ProgramRun> yh;  // in the order of YhRunNames()
};

// yh's runs: `yh show BACKUP all` in each format, `yh export`, `yh report`.
const std::vector<std::string>& YhRunNames();
// Whether the run at this place copies the backup's media (`yh export` and
// `yh report`): its time is set against the library's and the copy's.
bool CopiesMedia(size_t run);

// One round on `backup` (a backup folder) with the yh at `yh`; outputs go to
// temporary folders, removed before it returns.
YhRound RunYhRound(const std::string& yh, const std::string& backup);

// False when a run of the round failed.
bool AllRan(const YhRound& round);

}  // namespace bench

#endif
