#include "Progress.h"

#include <unistd.h>

#include <iostream>

namespace yh {

Progress::Progress() : shown_(::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() { Finish(); }

void Progress::Show(const std::string& kind, size_t done, size_t total, uint64_t bytes) {
  if (!shown_) return;
  // "\x1b[K" clears what a longer earlier line left.
  std::cerr << "\rcopying " << kind << ": " << done << "/" << total << " files, " << bytes << " bytes\x1b[K"
            << std::flush;
  open_ = true;
}

void Progress::Finish() {
  if (!open_) return;
  std::cerr << '\n' << std::flush;
  open_ = false;
}

}  // namespace yh
