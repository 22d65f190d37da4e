#include "crypto/ArchivedFile.h"

#include <plist/plist.h>

#include <memory>

namespace {

struct PlistFree {
  void operator()(void* node) const { plist_free(static_cast<plist_t>(node)); }
};
using Plist = std::unique_ptr<void, PlistFree>;

// A node of $objects, following a UID reference; NULL when out of range.
plist_t Resolve(plist_t objects, plist_t node) {
  if (!node || plist_get_node_type(node) != PLIST_UID) return node;
  uint64_t index = 0;
  plist_get_uid_val(node, &index);
  if (index >= plist_array_get_size(objects)) return nullptr;
  plist_t target = plist_array_get_item(objects, static_cast<uint32_t>(index));
  return target && plist_get_node_type(target) == PLIST_UID ? nullptr : target;
}

// The bytes of a data node or of an NSData archive's NS.data.
bool DataOf(plist_t objects, plist_t node, std::string* out) {
  node = Resolve(objects, node);
  if (node && plist_get_node_type(node) == PLIST_DICT) node = Resolve(objects, plist_dict_get_item(node, "NS.data"));
  if (!node || plist_get_node_type(node) != PLIST_DATA) return false;
  char* bytes = nullptr;
  uint64_t length = 0;
  plist_get_data_val(node, &bytes, &length);
  out->assign(bytes ? bytes : "", bytes ? length : 0);
  free(bytes);
  return true;
}

}  // namespace

std::optional<StoredKey> ReadArchivedFileKey(const void* blob, size_t size) {
  if (!blob || size == 0 || size > UINT32_MAX) return std::nullopt;
  plist_t parsed = nullptr;
  plist_from_bin(static_cast<const char*>(blob), static_cast<uint32_t>(size), &parsed);
  const Plist archive(parsed);
  if (!parsed || plist_get_node_type(parsed) != PLIST_DICT) return std::nullopt;
  plist_t objects = plist_dict_get_item(parsed, "$objects");
  plist_t top = plist_dict_get_item(parsed, "$top");
  if (!objects || plist_get_node_type(objects) != PLIST_ARRAY || !top || plist_get_node_type(top) != PLIST_DICT) {
    return std::nullopt;
  }
  plist_t root = Resolve(objects, plist_dict_get_item(top, "root"));
  if (!root || plist_get_node_type(root) != PLIST_DICT) return std::nullopt;
  std::string key;
  if (!DataOf(objects, plist_dict_get_item(root, "EncryptionKey"), &key)) return std::nullopt;
  std::optional<StoredKey> found = SplitStoredKey(key);
  if (!found) return std::nullopt;
  plist_t named = Resolve(objects, plist_dict_get_item(root, "ProtectionClass"));
  if (named && plist_get_node_type(named) == PLIST_UINT) {
    uint64_t value = 0;
    plist_get_uint_val(named, &value);
    if (value <= UINT32_MAX) found->protectionClass = static_cast<uint32_t>(value);
  }
  return found;
}
