#include "PlistShapes.h"

namespace yhfuzz {
namespace {

std::string Key(FuzzedDataProvider& bytes, const std::vector<std::string>& keys) {
  if (keys.empty() || bytes.ConsumeBool()) return bytes.ConsumeRandomLengthString(16);
  return keys[bytes.ConsumeIntegralInRange<size_t>(0, keys.size() - 1)];
}

}  // namespace

plist_t GrowPlist(FuzzedDataProvider& bytes, const std::vector<std::string>& keys, int depth) {
  const int deepest = depth > 0 ? 8 : 6;
  switch (bytes.ConsumeIntegralInRange<int>(0, deepest)) {
    case 0: return plist_new_string(bytes.ConsumeRandomLengthString(64).c_str());
    case 1: return plist_new_bool(bytes.ConsumeBool());
    case 2: return plist_new_uint(bytes.ConsumeIntegral<uint64_t>());
    case 3: return plist_new_real(bytes.ConsumeFloatingPoint<double>());
    case 4: return plist_new_date(bytes.ConsumeIntegral<int32_t>(), bytes.ConsumeIntegral<int32_t>());
    case 5: {
      const std::string data = bytes.ConsumeRandomLengthString(32);
      return plist_new_data(data.data(), data.size());
    }
    case 6: return plist_new_uid(bytes.ConsumeIntegral<uint64_t>());
    case 7: {
      plist_t array = plist_new_array();
      for (int n = bytes.ConsumeIntegralInRange<int>(0, 6); n > 0 && bytes.remaining_bytes(); --n) {
        plist_array_append_item(array, GrowPlist(bytes, keys, depth - 1));
      }
      return array;
    }
    default: return GrowDict(bytes, keys, depth);
  }
}

plist_t GrowDict(FuzzedDataProvider& bytes, const std::vector<std::string>& keys, int depth) {
  plist_t dict = plist_new_dict();
  for (int n = bytes.ConsumeIntegralInRange<int>(0, 8); n > 0 && bytes.remaining_bytes(); --n) {
    const std::string key = Key(bytes, keys);
    plist_dict_set_item(dict, key.c_str(), GrowPlist(bytes, keys, depth - 1));
  }
  return dict;
}

std::string PlistFileBytes(plist_t root, bool binary) {
  char* text = nullptr;
  uint32_t length = 0;
  if (binary) {
    plist_to_bin(root, &text, &length);
  } else {
    plist_to_xml(root, &text, &length);
  }
  std::string bytes = text ? std::string(text, length) : std::string();
  if (binary) {
    plist_to_bin_free(text);
  } else {
    plist_to_xml_free(text);
  }
  plist_free(root);
  return bytes;
}

}  // namespace yhfuzz
