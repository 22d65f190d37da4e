#include "Progress.h"

#include <algorithm>
#include <iostream>

#include "platform/Terminal.h"

namespace yh {
namespace {

constexpr size_t kBarWidth = 24;
// Redrawing for every file would cost more than copying small ones.
constexpr std::chrono::milliseconds kRedraw{100};

}  // namespace

Progress::Progress() : shown_(platform::IsTerminal(platform::Stream::Error)) {}

Progress::~Progress() { Finish(); }

bool Progress::Due(bool last) {
  if (!shown_) return false;
  const auto now = std::chrono::steady_clock::now();
  if (open_ && !last && now - drawn_ < kRedraw) return false;
  drawn_ = now;
  return true;
}

void Progress::Show(const std::string& task, size_t done, size_t total, const std::string& detail) {
  if (!Due(done >= total)) return;
  const size_t filled = total ? kBarWidth * std::min(done, total) / total : kBarWidth;
  Line(task + " [" + std::string(filled, '#') + std::string(kBarWidth - filled, '-') + "] " + std::to_string(done) +
       "/" + std::to_string(total) + " " + detail);
}

void Progress::Count(const std::string& task, size_t done, const std::string& detail) {
  if (Due(false)) Line(task + " " + std::to_string(done) + " " + detail);
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
