#include "common/ColumnHelpers.h"

#include <cmath>
#include <cstdlib>
#include <limits>

// Design decision: int and long are both 32 bits wide on the device library's
// target, where atoi and atol parse like strtol and saturate out-of-range
// texts. Parsing with strtol and clamping to the int32 range gives the same
// numbers on a host whose long is 64 bits wide (where atoi would wrap), so a
// nanosecond date, say, reads as the largest second count rather than noise.
int32_t GetZeroIntIsNull(const char* text) {
  if (!text) return 0;
  const long value = std::strtol(text, nullptr, 10);
  if (value > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  if (value < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(value);
}

int32_t GetZeroLongIsNull(const char* text) { return GetZeroIntIsNull(text); }

std::string GetEmptyStringIsNull(const char* text) { return text ? std::string(text) : std::string(); }

std::string_view GetEmptyViewIsNull(const char* text) { return text ? std::string_view(text) : std::string_view(); }

std::optional<double> FiniteRealOf(const char* text) {
  if (!text || !*text) return std::nullopt;
  char* end = nullptr;
  const double value = std::strtod(text, &end);
  if (*end != '\0' || !std::isfinite(value)) return std::nullopt;
  return value;
}
