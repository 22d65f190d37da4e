#include "PlistJson.h"

#include <cstdlib>
#include <memory>
#include <string>

#include "PlistEntries.h"
#include "PlistTexts.h"

namespace yh {
namespace {

struct FreeText {
  void operator()(char* text) const { std::free(text); }
};
using OwnedText = std::unique_ptr<char, FreeText>;

Json Dictionary(plist_t node) {
  Json object = Json::object();
  ForEachEntry(node, [&object](std::string_view key, plist_t value) { object[std::string(key)] = ToJson(value); });
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
      return DateText(node);
    case PLIST_DATA:
      return DataText(node);
    default:
      return nullptr;
  }
}

std::string JsonText(const Json& json) { return json.dump(2, ' ', false, Json::error_handler_t::replace); }

std::string CellText(plist_t node) {
  // Texts are most cells: taken as they are, with no JSON value between.
  if (node && plist_get_node_type(node) == PLIST_STRING) {
    uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    return text ? std::string(text, length) : std::string();
  }
  // Numbers and truth values as their JSON texts, without a JSON value.
  if (node && plist_get_node_type(node) == PLIST_UINT) {
    uint64_t value = 0;
    plist_get_uint_val(node, &value);
    return std::to_string(value);
  }
  if (node && plist_get_node_type(node) == PLIST_BOOLEAN) {
    uint8_t value = 0;
    plist_get_bool_val(node, &value);
    return value ? "true" : "false";
  }
  const Json json = ToJson(node);
  if (json.is_string()) return json.get<std::string>();
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace yh
