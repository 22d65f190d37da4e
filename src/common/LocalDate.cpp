#include "common/LocalDate.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <optional>

#include "common/CivilTime.h"
#include "common/DateHelpers.h"

namespace {

constexpr int64_t kUnixTo2001 = 978307200;
// About 95,000 years after 1970 as seconds, about three years as nanoseconds:
// no real date of either unit comes near it.
constexpr double kLargestSeconds = 3e12;

// Whole seconds of the text, or nothing. Integers are read exactly, so that
// nanosecond counts near a second's boundary fall on the right side of it.
std::optional<int64_t> StoredSeconds(const char* stored) {
  if (!stored || !*stored) return std::nullopt;
  char* end = nullptr;
  errno = 0;
  const long long whole = std::strtoll(stored, &end, 10);
  if (*end == '\0' && errno == 0) {
    // The least count has no magnitude to read, in either unit.
    if (whole == std::numeric_limits<long long>::min()) return std::nullopt;
    if (std::llabs(whole) <= kLargestSeconds) return whole;
    const long long seconds = whole / 1000000000;
    return whole < 0 && whole % 1000000000 != 0 ? seconds - 1 : seconds;
  }
  const double value = std::strtod(stored, &end);
  if (end == stored || *end != '\0' || !std::isfinite(value)) return std::nullopt;
  const double seconds = std::fabs(value) <= kLargestSeconds ? value : value / 1e9;
  if (std::fabs(seconds) > kLargestSeconds) return std::nullopt;
  return static_cast<int64_t>(std::floor(seconds));
}

// The stored instant as seconds since 1970, not yet checked against the host.
// A stored 0 is what devices write where there is no date (an attachment's
// creation, a reminder never completed): the epoch itself is no record's date.
std::optional<time_t> StoredInstant(const char* stored, TimeBase base) {
  const std::optional<int64_t> seconds = StoredSeconds(stored);
  if (!seconds || *seconds == 0) return std::nullopt;
  const bool since2001 = base == TimeBase::Since2001 || (base == TimeBase::ByMagnitude && *seconds < kUnixTo2001);
  return static_cast<time_t>(*seconds + (since2001 ? kUnixTo2001 : 0));
}

}  // namespace

LocalDate LocalDateOf(const char* stored, TimeBase base) {
  const std::optional<time_t> instant = StoredInstant(stored, base);
  std::tm local{};
  if (!instant || !LocalFields(*instant, &local)) return {};
  return {DateTextOf(local), *instant};
}

std::string LocalDateText(const char* stored, TimeBase base) { return LocalDateOf(stored, base).text; }

std::string FloatingDateText(const char* stored, TimeBase base) {
  const std::optional<time_t> when = StoredInstant(stored, base);
  std::tm fields{};
  if (!when || !UtcFields(*when, &fields)) return std::string();
  return DateTextOf(fields);
}
