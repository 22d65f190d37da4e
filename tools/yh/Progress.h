#ifndef YH_TOOL_PROGRESS_H
#define YH_TOOL_PROGRESS_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace yh {

// One line of copy progress on standard error, redrawn in place; shown only
// when standard error is a terminal.
class Progress {
 public:
  Progress();
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Show(const std::string& kind, size_t done, size_t total, uint64_t bytes);
  // Any one line in place of the last.
  void Line(const std::string& text);
  // Ends the line, so that later messages start on their own.
  void Finish();

 private:
  bool shown_;
  bool open_ = false;
};

}  // namespace yh

#endif
