#include "PlistTexts.h"

#include <ctime>

#include "common/CivilTime.h"

namespace yh {
namespace {

// libplist counts dates from 2001-01-01 00:00:00 UTC.
constexpr int64_t kSeconds1970To2001 = 978307200;

}  // namespace

std::string DateText(plist_t node) {
  int32_t seconds = 0;
  int32_t microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  std::tm utc{};
  UtcFields(kSeconds1970To2001 + seconds, &utc);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
  return text;
}

std::string DataText(plist_t node) {
  static const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  uint64_t length = 0;
  const char* bytes = plist_get_data_ptr(node, &length);
  std::string text;
  text.reserve((length + 2) / 3 * 4);
  for (uint64_t i = 0; i < length; i += 3) {
    uint32_t group = static_cast<unsigned char>(bytes[i]) << 16;
    if (i + 1 < length) group |= static_cast<unsigned char>(bytes[i + 1]) << 8;
    if (i + 2 < length) group |= static_cast<unsigned char>(bytes[i + 2]);
    text += kDigits[(group >> 18) & 63];
    text += kDigits[(group >> 12) & 63];
    text += i + 1 < length ? kDigits[(group >> 6) & 63] : '=';
    text += i + 2 < length ? kDigits[group & 63] : '=';
  }
  return text;
}

}  // namespace yh
