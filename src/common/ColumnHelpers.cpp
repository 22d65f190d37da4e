#include "common/ColumnHelpers.h"

#include <cstdlib>
#include <limits>

int32_t GetZeroIntIsNull(const char* text) { return text ? std::atoi(text) : 0; }

int32_t GetZeroLongIsNull(const char* text) {
  if (!text) return 0;
  // Design decision: the value is a long that is 32 bits wide on the device
  // library's target, where atol saturates out-of-range texts. Parsing like
  // strtol and clamping to the int32 range gives the same result on a host
  // whose long is 64 bits wide.
  const long value = std::strtol(text, nullptr, 10);
  if (value > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  if (value < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(value);
}

std::string GetEmptyStringIsNull(const char* text) { return text ? std::string(text) : std::string(); }
