#include "crypto/KeyBag.h"

#include "common/BigEndianBitConverter.h"

namespace {

constexpr size_t kWrappedKeySize = 40;

uint32_t Number(std::string_view value) {
  if (value.size() != 4) return 0;
  return BigEndianBitConverter::ToUInt32(reinterpret_cast<const unsigned char*>(value.data()), 0);
}

// Stores one record; class-entry tags go to the entry being read.
void Take(std::string_view tag, std::string_view value, KeyBag* bag, KeyBag::ClassKey* entry) {
  if (entry) {
    if (tag == "CLAS") entry->protectionClass = Number(value);
    else if (tag == "WRAP") entry->wrap = Number(value);
    else if (tag == "WPKY") entry->wrappedKey = std::string(value);
    return;
  }
  if (tag == "VERS") bag->version = Number(value);
  else if (tag == "TYPE") bag->type = Number(value);
  else if (tag == "SALT") bag->salt = std::string(value);
  else if (tag == "ITER") bag->iterations = Number(value);
  else if (tag == "DPSL") bag->doubleProtectionSalt = std::string(value);
  else if (tag == "DPIC") bag->doubleProtectionIterations = Number(value);
}

bool Usable(const KeyBag& bag) {
  if (bag.salt.empty() || bag.iterations == 0 || bag.classKeys.empty()) return false;
  if (bag.HasDoubleProtection() && bag.doubleProtectionIterations == 0) return false;
  for (const KeyBag::ClassKey& key : bag.classKeys) {
    if (key.wrappedKey.size() != kWrappedKeySize) return false;
  }
  return true;
}

}  // namespace

std::optional<KeyBag> ParseKeyBag(std::string_view bytes) {
  KeyBag bag;
  bool seenOwnUuid = false;
  bool inClassEntry = false;
  size_t offset = 0;
  while (offset < bytes.size()) {
    if (bytes.size() - offset < 8) return std::nullopt;
    const std::string_view tag = bytes.substr(offset, 4);
    const uint32_t length = Number(bytes.substr(offset + 4, 4));
    offset += 8;
    if (length > bytes.size() - offset) return std::nullopt;
    const std::string_view value = bytes.substr(offset, length);
    offset += length;
    // The first UUID is the bag's own; every later one opens a class entry.
    if (tag == "UUID") {
      if (seenOwnUuid) {
        bag.classKeys.emplace_back();
        inClassEntry = true;
      }
      seenOwnUuid = true;
      continue;
    }
    Take(tag, value, &bag, inClassEntry ? &bag.classKeys.back() : nullptr);
  }
  // Entries without a wrapped key (a stray CLAS record) carry nothing to unwrap.
  std::vector<KeyBag::ClassKey> keyed;
  for (KeyBag::ClassKey& key : bag.classKeys) {
    if (!key.wrappedKey.empty()) keyed.push_back(std::move(key));
  }
  bag.classKeys = std::move(keyed);
  if (!Usable(bag)) return std::nullopt;
  return bag;
}
