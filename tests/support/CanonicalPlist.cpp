#include "support/CanonicalPlist.h"

#include <plist/plist.h>

#include <cstdio>
#include <ctime>
#include <map>

#include "common/CivilTime.h"

namespace yhtest {
namespace {

std::string Hex(const unsigned char* bytes, size_t size) {
  static const char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (size_t i = 0; i < size; ++i) {
    hex += kDigits[bytes[i] >> 4];
    hex += kDigits[bytes[i] & 0xF];
  }
  return hex;
}

std::string Quoted(const std::string& text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      case '\b': out += "\\b"; break;
      case '\f': out += "\\f"; break;
      default:
        if (c < 0x20) {
          char escaped[8];
          std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
          out += escaped;
        } else {
          out += static_cast<char>(c);
        }
    }
  }
  return out + "\"";
}

std::string Dump(plist_t node);

std::string DumpDict(plist_t node) {
  if (plist_dict_get_size(node) == 1) {
    plist_t uid = plist_dict_get_item(node, "CF$UID");
    if (uid && plist_get_node_type(uid) == PLIST_UINT) {
      uint64_t value = 0;
      plist_get_uint_val(uid, &value);
      return Quoted("uid:" + std::to_string(value));
    }
  }
  std::map<std::string, std::string> members;
  plist_dict_iter iter = nullptr;
  plist_dict_new_iter(node, &iter);
  for (;;) {
    char* key = nullptr;
    plist_t value = nullptr;
    plist_dict_next_item(node, iter, &key, &value);
    if (!key) break;
    members[key] = Dump(value);
    free(key);
  }
  free(iter);
  std::string out = "{";
  for (const auto& [key, value] : members) {
    if (out.size() > 1) out += ", ";
    out += Quoted(key) + ": " + value;
  }
  return out + "}";
}

std::string DumpDate(plist_t node) {
  int32_t seconds = 0;
  int32_t micros = 0;
  plist_get_date_val(node, &seconds, &micros);
  time_t unix = static_cast<time_t>(seconds) + 978307200;
  if (micros < 0) --unix;
  struct tm fields {};
  UtcFields(unix, &fields);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &fields);
  return Quoted(std::string("date:") + text);
}

std::string Dump(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_DICT: return DumpDict(node);
    case PLIST_ARRAY: {
      std::string out = "[";
      for (uint32_t i = 0; i < plist_array_get_size(node); ++i) {
        if (i) out += ", ";
        out += Dump(plist_array_get_item(node, i));
      }
      return out + "]";
    }
    case PLIST_BOOLEAN: {
      uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return value ? "true" : "false";
    }
    case PLIST_UINT: {
      uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return std::to_string(static_cast<int64_t>(value));
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      char text[64];
      std::snprintf(text, sizeof text, "%.6g", value + 0.0);
      return Quoted(std::string("real:") + text);
    }
    case PLIST_STRING: {
      char* text = nullptr;
      plist_get_string_val(node, &text);
      const std::string out = Quoted(text ? text : "");
      free(text);
      return out;
    }
    case PLIST_DATA: {
      char* bytes = nullptr;
      uint64_t length = 0;
      plist_get_data_val(node, &bytes, &length);
      const std::string out = Quoted("data:" + Hex(reinterpret_cast<unsigned char*>(bytes), length));
      free(bytes);
      return out;
    }
    case PLIST_DATE: return DumpDate(node);
    case PLIST_UID: {
      uint64_t value = 0;
      plist_get_uid_val(node, &value);
      return Quoted("uid:" + std::to_string(value));
    }
    default: return "null";
  }
}

}  // namespace

std::string CanonicalPlistJson(const std::string& bytes) {
  plist_t root = nullptr;
  if (bytes.compare(0, 8, "bplist00") == 0) {
    plist_from_bin(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
  } else {
    plist_from_xml(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
  }
  if (!root) return std::string();
  const std::string json = Dump(root);
  plist_free(root);
  return json;
}

}  // namespace yhtest
