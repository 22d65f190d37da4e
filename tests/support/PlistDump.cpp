#include "support/PlistDump.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

namespace yhtest {
namespace {

void AppendQuoted(std::string& out, const char* text) {
  out += '"';
  for (const char* p = text; *p; ++p) {
    if (*p == '"' || *p == '\\') out += '\\';
    out += *p;
  }
  out += '"';
}

void DumpInto(std::string& out, plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_ARRAY: {
      out += '[';
      for (uint32_t i = 0; i < plist_array_get_size(node); ++i) {
        if (i) out += ',';
        DumpInto(out, plist_array_get_item(node, i));
      }
      out += ']';
      break;
    }
    case PLIST_DICT: {
      out += '{';
      plist_dict_iter it = nullptr;
      plist_dict_new_iter(node, &it);
      bool first = true;
      for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, it, &key, &value);
        if (!key) break;
        if (!first) out += ',';
        first = false;
        AppendQuoted(out, key);
        out += ':';
        DumpInto(out, value);
        free(key);
      }
      free(it);
      out += '}';
      break;
    }
    case PLIST_STRING: {
      char* text = nullptr;
      plist_get_string_val(node, &text);
      AppendQuoted(out, text ? text : "");
      free(text);
      break;
    }
    case PLIST_UINT: {
      uint64_t value = 0;
      plist_get_uint_val(node, &value);
      out += std::to_string(value) + "u";
      break;
    }
    case PLIST_BOOLEAN: {
      uint8_t value = 0;
      plist_get_bool_val(node, &value);
      out += value ? "true" : "false";
      break;
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      char buffer[64];
      snprintf(buffer, sizeof buffer, "%gr", value);
      out += buffer;
      break;
    }
    case PLIST_DATE: {
      int32_t sec = 0, usec = 0;
      plist_get_date_val(node, &sec, &usec);
      out += std::to_string(sec) + "d";
      break;
    }
    case PLIST_DATA: {
      char* data = nullptr;
      uint64_t length = 0;
      plist_get_data_val(node, &data, &length);
      out += '<';
      for (uint64_t i = 0; i < length; ++i) {
        char hex[3];
        snprintf(hex, sizeof hex, "%02x", static_cast<unsigned char>(data[i]));
        out += hex;
      }
      out += '>';
      free(data);
      break;
    }
    default:
      out += node ? "?" : "null";
  }
}

}  // namespace

std::string Dump(plist_t node) {
  std::string out;
  DumpInto(out, node);
  return out;
}

std::string DumpAndFree(plist_t node) {
  std::string out = Dump(node);
  plist_free(node);
  return out;
}

std::string StringAt(plist_t dict, const char* key) {
  plist_t node = plist_dict_get_item(dict, key);
  if (!node || plist_get_node_type(node) != PLIST_STRING) return std::string();
  char* text = nullptr;
  plist_get_string_val(node, &text);
  std::string value = text ? text : "";
  free(text);
  return value;
}

}  // namespace yhtest
