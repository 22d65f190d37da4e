#include "PlistJson.h"

#include <cstdlib>
#include <ctime>
#include <memory>

namespace yh {
namespace {

// libplist counts dates from 2001-01-01 00:00:00 UTC.
constexpr time_t kSeconds1970To2001 = 978307200;

struct FreeText {
  void operator()(char* text) const { std::free(text); }
};
using OwnedText = std::unique_ptr<char, FreeText>;

std::string Base64(const char* bytes, uint64_t length) {
  static const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
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

std::string IsoDate(plist_t node) {
  int32_t seconds = 0;
  int32_t microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  const time_t unixSeconds = kSeconds1970To2001 + seconds;
  std::tm utc{};
  gmtime_r(&unixSeconds, &utc);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
  return text;
}

Json Dictionary(plist_t node) {
  Json object = Json::object();
  plist_dict_iter iter = nullptr;
  plist_dict_new_iter(node, &iter);
  for (;;) {
    char* rawKey = nullptr;
    plist_t value = nullptr;
    plist_dict_next_item(node, iter, &rawKey, &value);
    if (!value) break;
    OwnedText key(rawKey);
    object[key ? key.get() : ""] = ToJson(value);
  }
  std::free(iter);
  return object;
}

Json Array(plist_t node) {
  Json array = Json::array();
  const uint32_t size = plist_array_get_size(node);
  for (uint32_t i = 0; i < size; ++i) array.push_back(ToJson(plist_array_get_item(node, i)));
  return array;
}

}  // namespace

Json ToJson(plist_t node) {
  if (!node) return nullptr;
  switch (plist_get_node_type(node)) {
    case PLIST_DICT:
      return Dictionary(node);
    case PLIST_ARRAY:
      return Array(node);
    case PLIST_STRING: {
      char* raw = nullptr;
      plist_get_string_val(node, &raw);
      OwnedText text(raw);
      return text ? text.get() : "";
    }
    case PLIST_UINT: {
      uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return value;
    }
    case PLIST_UID: {
      uint64_t value = 0;
      plist_get_uid_val(node, &value);
      return value;
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return value;
    }
    case PLIST_BOOLEAN: {
      uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return value != 0;
    }
    case PLIST_DATE:
      return IsoDate(node);
    case PLIST_DATA: {
      char* raw = nullptr;
      uint64_t length = 0;
      plist_get_data_val(node, &raw, &length);
      OwnedText bytes(raw);
      return Base64(bytes.get(), length);
    }
    default:
      return nullptr;
  }
}

std::string JsonText(const Json& json) { return json.dump(2, ' ', false, Json::error_handler_t::replace); }

std::string CellText(plist_t node) {
  const Json json = ToJson(node);
  if (json.is_string()) return json.get<std::string>();
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace yh
