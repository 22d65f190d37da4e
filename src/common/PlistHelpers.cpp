#include "common/PlistHelpers.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include "common/FileHelpers.h"
#include "common/PlistSafety.h"
#include "common/TextHelpers.h"

namespace {

const char kBinaryMagic[] = "bplist00";
const size_t kMagicSize = 8;

struct FileCloser {
  void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, FileCloser>;

// A damaged file can hold zero bytes inside a string. libplist keeps the
// declared length, then aborts when asked for such a text and reads past it
// when copying or writing the node. Every such string is set again to the
// text before its first zero byte, which is what a C-string reader sees.
void EndStringsAtZeroBytes(plist_t root) {
  std::vector<plist_t> pending{root};
  while (!pending.empty()) {
    plist_t node = pending.back();
    pending.pop_back();
    switch (plist_get_node_type(node)) {
      case PLIST_STRING: {
        uint64_t length = 0;
        const char* text = plist_get_string_ptr(node, &length);
        if (text && std::strlen(text) != length) plist_set_string_val(node, std::string(text).c_str());
        break;
      }
      case PLIST_ARRAY: {
        // plist_array_get_item walks a parsed array from its start each time.
        plist_array_iter iter = nullptr;
        plist_array_new_iter(node, &iter);
        for (plist_t item = nullptr;;) {
          plist_array_next_item(node, iter, &item);
          if (!item) break;
          pending.push_back(item);
        }
        std::free(iter);
        break;
      }
      case PLIST_DICT: {
        plist_dict_iter iter = nullptr;
        plist_dict_new_iter(node, &iter);
        for (plist_t value = nullptr;;) {
          plist_dict_next_item(node, iter, nullptr, &value);
          if (!value) break;
          pending.push_back(value);
        }
        std::free(iter);
        break;
      }
      default:
        break;
    }
  }
}

}  // namespace

plist_t ReadPlist(const char* path) {
  const uint64_t size = VQGetFileSize(path);
  // libplist takes a 32-bit length; a larger file cannot be a property list
  // it could read whole, so it counts as unreadable.
  if (size == 0 || size >= std::numeric_limits<uint32_t>::max()) return nullptr;
  std::vector<char> buffer(static_cast<size_t>(size) + 1, 0);
  {
    File file(YHfopen(path, "rb"));
    if (!file) return nullptr;
    if (std::fread(buffer.data(), 1, static_cast<size_t>(size), file.get()) == 0) return nullptr;
  }
  const uint32_t length = static_cast<uint32_t>(size);
  if (!IsSafeForLibplist(buffer.data(), length)) return nullptr;
  plist_t root = nullptr;
  if (IsBinPlist(path)) {
    plist_from_bin(buffer.data(), length, &root);
  } else {
    plist_from_xml(buffer.data(), length, &root);
  }
  if (root && MayHoldZeroInString(buffer.data(), length)) EndStringsAtZeroBytes(root);
  return root;
}

int IsBinPlist(const char* path) {
  File file(YHfopen(path, "rb"));
  if (!file) return 0;
  char head[kMagicSize];
  if (std::fread(head, 1, kMagicSize, file.get()) != kMagicSize) return 0;
  return std::memcmp(head, kBinaryMagic, kMagicSize) == 0 ? 1 : 0;
}

void PrintPlist(plist_t node) {
  if (!node) return;
  char* xml = nullptr;
  uint32_t length = 0;
  plist_to_xml(node, &xml, &length);
  if (xml) std::printf("%s\n", xml);
  plist_to_xml_free(xml);
}

void plist_std_free(const char* p) { std::free(const_cast<char*>(p)); }

void InsertPlistDictString(plist_t dict, const char* key, const char* value) {
  plist_dict_set_item(dict, key, plist_new_string(value ? value : ""));
}

void InsertPackedTexts(plist_t dict, const PackedTexts& texts,
                       std::initializer_list<std::pair<const char*, size_t>> keys) {
  for (const auto& [key, text] : keys) InsertPlistDictString(dict, key, texts.AsCString(text));
}

void AddNoneValuePlistDictString(plist_t dict, const char* key, const char* value) {
  plist_dict_set_item(dict, key, plist_new_string(value && *value ? value : "(None)"));
}

void AppendPlistArrayString(plist_t array, const char* value) {
  plist_array_append_item(array, plist_new_string(value ? value : ""));
}

plist_t PlistCopyZero(plist_t node) { return node ? plist_copy(node) : plist_new_uint(0); }

plist_t PlistCopyEmptyString(plist_t node) { return node ? plist_copy(node) : plist_new_string(""); }

bool PlistGetString(plist_t node, std::string* out) {
  if (plist_get_node_type(node) != PLIST_STRING) return false;
  char* text = nullptr;
  plist_get_string_val(node, &text);
  if (!text) return false;
  out->assign(text);
  plist_std_free(text);
  return true;
}

int64_t PlistGetDateSeconds(plist_t node) {
  if (plist_get_node_type(node) != PLIST_DATE) return 0;
  int32_t seconds = 0;
  int32_t microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  return seconds;
}

uint32_t PlistGetBool(plist_t node) {
  if (plist_get_node_type(node) != PLIST_BOOLEAN) return 0;
  uint8_t value = 0;
  plist_get_bool_val(node, &value);
  return value ? 1 : 0;
}
