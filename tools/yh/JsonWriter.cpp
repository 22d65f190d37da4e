#include "JsonWriter.h"

#include <charconv>
#include <string_view>

#include "PlistEntries.h"
#include "PlistJson.h"
#include "PlistTexts.h"

namespace yh {
namespace {

// Text with no byte that JSON escapes and none beyond ASCII needs no work;
// the rest goes through nlohmann-json, which escapes and replaces bytes that
// are not UTF-8 in its own way.
bool IsPlain(const char* text, size_t length) {
  for (size_t i = 0; i < length; ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c < 0x20 || c >= 0x80 || c == '"' || c == '\\') return false;
  }
  return true;
}

void WriteText(std::ostream& out, const char* text, size_t length) {
  if (!IsPlain(text, length)) {
    out << JsonText(Json(std::string(text, length)));
    return;
  }
  out << '"';
  out.write(text, static_cast<std::streamsize>(length));
  out << '"';
}

void WriteText(std::ostream& out, const std::string& text) { WriteText(out, text.data(), text.size()); }

// A line break, then the indentation of `depth`.
void NewLine(std::ostream& out, int depth) {
  out << '\n';
  for (int i = 0; i < depth; ++i) out.write("  ", 2);
}

void WriteNumber(std::ostream& out, uint64_t value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.write(digits, end - digits);
}

// A member of an object that stands at `depth`: the opening brace or the
// comma before it, then its key and value on a line of their own.
void WriteKey(std::ostream& out, bool first, const char* key, size_t length, int depth) {
  out << (first ? '{' : ',');
  NewLine(out, depth + 1);
  WriteText(out, key, length);
  out.write(": ", 2);
}

void WriteMember(std::ostream& out, bool first, const char* key, size_t length, plist_t value, int depth) {
  WriteKey(out, first, key, length, depth);
  WriteJson(out, value, depth + 1);
}

void CloseObject(std::ostream& out, bool empty, int depth) {
  if (empty) {
    out.write("{}", 2);
    return;
  }
  NewLine(out, depth);
  out << '}';
}

void WriteDictionary(std::ostream& out, plist_t node, int depth) {
  bool empty = true;
  ForEachEntry(node, [&](std::string_view key, plist_t value) {
    WriteMember(out, empty, key.data(), key.size(), value, depth);
    empty = false;
  });
  CloseObject(out, empty, depth);
}

void WriteArray(std::ostream& out, plist_t node, int depth) {
  JsonArrayWriter array(out, depth);
  const uint32_t size = plist_array_get_size(node);
  for (uint32_t i = 0; i < size; ++i) array.Add(plist_array_get_item(node, i));
  array.Finish();
}

}  // namespace

void WriteJson(std::ostream& out, plist_t node, int depth) {
  if (!node) {
    out.write("null", 4);
    return;
  }
  switch (plist_get_node_type(node)) {
    case PLIST_DICT:
      WriteDictionary(out, node, depth);
      break;
    case PLIST_ARRAY:
      WriteArray(out, node, depth);
      break;
    case PLIST_STRING: {
      uint64_t length = 0;
      const char* text = plist_get_string_ptr(node, &length);
      WriteText(out, text ? text : "", text ? length : 0);
      break;
    }
    case PLIST_UINT: {
      uint64_t value = 0;
      plist_get_uint_val(node, &value);
      WriteNumber(out, value);
      break;
    }
    case PLIST_UID: {
      uint64_t value = 0;
      plist_get_uid_val(node, &value);
      WriteNumber(out, value);
      break;
    }
    case PLIST_BOOLEAN: {
      uint8_t value = 0;
      plist_get_bool_val(node, &value);
      out << (value ? "true" : "false");
      break;
    }
    case PLIST_DATE:
      WriteText(out, DateText(node));
      break;
    case PLIST_DATA:
      WriteText(out, DataText(node));
      break;
    default:
      // Reals and the rest: nlohmann-json's own number format.
      out << JsonText(ToJson(node));
      break;
  }
}

void JsonObjectWriter::Key(const std::string& key) {
  WriteKey(out_, empty_, key.data(), key.size(), 0);
  empty_ = false;
}

void JsonObjectWriter::Finish() { CloseObject(out_, empty_, 0); }

void JsonArrayWriter::Add(plist_t element) {
  out_ << (empty_ ? '[' : ',');
  NewLine(out_, depth_ + 1);
  WriteJson(out_, element, depth_ + 1);
  empty_ = false;
}

void JsonArrayWriter::Finish() {
  if (empty_) {
    out_.write("[]", 2);
    return;
  }
  NewLine(out_, depth_);
  out_ << ']';
}

}  // namespace yh
