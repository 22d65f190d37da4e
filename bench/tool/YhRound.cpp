#include "YhRound.h"

#include <unistd.h>

#include "LibraryRequests.h"
#include "TempFolder.h"

namespace bench {

namespace {

const char* const kFormats[] = {"json", "xml", "csv", "table"};

// `yh export` into a new folder, then `cp -r` of the media it wrote, once
// they are written out (sync), as a copy of files at rest.
void RunExport(const std::string& yh, const std::string& backup, YhRound* round) {
  const TempFolder folder;
  round->yh.push_back(RunProgram({yh, "export", backup, "--out", folder / "export"}));
  sync();
  round->copy = RunProgram({"cp", "-r", folder / "export/media", folder / "copy"});
}

ProgramRun RunReport(const std::string& yh, const std::string& backup) {
  const TempFolder folder;
  return RunProgram({yh, "report", backup, "--out", folder / "report"});
}

}  // namespace

const std::vector<std::string>& YhRunNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> shown;
    for (const char* format : kFormats) shown.push_back(std::string("yh show all --format ") + format);
    shown.push_back("yh export");
    shown.push_back("yh report");
    return shown;
  }();
  return names;
}

bool CopiesMedia(size_t run) { return run >= std::size(kFormats); }

YhRound RunYhRound(const std::string& yh, const std::string& backup) {
  YhRound round;
  round.analysis = RunLibrary(backup, Requests::Analysis);
  round.library = RunLibrary(backup, Requests::ShowAll);
  for (const char* format : kFormats) {
    round.yh.push_back(RunProgram({yh, "show", backup, "all", "--format", format}));
  }
  RunExport(yh, backup, &round);
  round.yh.push_back(RunReport(yh, backup));
  return round;
}

bool AllRan(const YhRound& round) {
  bool ran = round.analysis.ok && round.library.ok && round.copy.ok;
  for (const ProgramRun& run : round.yh) ran = ran && run.ok;
  return ran;
}

}  // namespace bench
