#ifndef YH_TOOL_UNFINISHEDMARK_H
#define YH_TOOL_UNFINISHEDMARK_H

#include <string>

#include "OutputFolder.h"

namespace yh {

// The file that says an export or a report is not complete: written before
// anything else, removed once everything is written, so a folder that an
// interrupted run left says so. Its text tells a person what to do and
// names the command and the backup, so that --resume finishes only what
// the same command began on the same backup.
class UnfinishedMark {
 public:
  static const char kName[];

  // Checks that `out` may be written by `command` ("export" or "report") on
  // the backup in folder `backup`: a new or empty folder, or with `resume`
  // one that the same command left unfinished on the same backup. Throws
  // Failure naming the folder and the ways out otherwise.
  UnfinishedMark(const std::string& out, const std::string& command, const std::string& backup, bool resume);

  // The folder, opened (made when missing); the mark is in it.
  OutputFolder& Folder() { return folder_; }
  // True when an interrupted run is being finished.
  bool Resumed() const { return resumed_; }

  // Removes the mark: the folder is complete.
  void Finish();

  // The mark's text.
  static std::string Text(const std::string& command, const std::string& backup);

 private:
  OutputFolder folder_;
  bool resumed_;
};

}  // namespace yh

#endif
