#include "Progress.h"

#include <unistd.h>

#include <iostream>

namespace yh {

Progress::Progress() : shown_(::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() { Finish(); }

void Progress::Show(const std::string& kind, size_t done, size_t total, uint64_t bytes) {
  if (!shown_) return;
  Line("copying " + kind + ": " + std::to_string(done) + "/" + std::to_string(total) + " files, " +
       std::to_string(bytes) + " bytes");
}

void Progress::Line(const std::string& text) {
  if (!shown_) return;
  // "\x1b[K" clears what a longer earlier line left.
  std::cerr << "\r" << text << "\x1b[K" << std::flush;
  open_ = true;
}

void Progress::Finish() {
  if (!open_) return;
  std::cerr << '\n' << std::flush;
  open_ = false;
}

}  // namespace yh
