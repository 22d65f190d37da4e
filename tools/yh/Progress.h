#ifndef YH_TOOL_PROGRESS_H
#define YH_TOOL_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <string>

namespace yh {

// One line of progress on standard error, redrawn in place; shown only when
// standard error is a terminal.
class Progress {
 public:
  Progress();
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // "TASK [####----] DONE/TOTAL DETAIL", redrawn at most ten times a second
  // until the last.
  void Show(const std::string& task, size_t done, size_t total, const std::string& detail);
  // "TASK DONE DETAIL", redrawn at most ten times a second, while the total
  // is not known.
  void Count(const std::string& task, size_t done, const std::string& detail);
  // Any one line in place of the last.
  void Line(const std::string& text);
  // Ends the line, so that later messages start on their own.
  void Finish();

 private:
  // Whether to draw now: the first and the `last` line always, the others at
  // most ten times a second.
  bool Due(bool last);

  bool shown_;
  bool open_ = false;
  std::chrono::steady_clock::time_point drawn_;
};

}  // namespace yh

#endif
