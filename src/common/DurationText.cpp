#include "common/DurationText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "common/DateHelpers.h"

std::string DurationText(const char* storedSeconds) {
  const double seconds = storedSeconds ? std::strtod(storedSeconds, nullptr) : 0;
  const double whole = std::isfinite(seconds) && seconds > 0 ? std::min(seconds, 4294967295.0) : 0;
  return DurationOf(static_cast<uint32_t>(whole));
}
