#include "crypto/StoredKey.h"

std::optional<StoredKey> SplitStoredKey(std::string_view bytes) {
  if (bytes.size() <= 4) return std::nullopt;
  StoredKey key;
  for (int i = 3; i >= 0; --i) key.protectionClass = key.protectionClass << 8 | static_cast<unsigned char>(bytes[i]);
  key.wrappedKey = std::string(bytes.substr(4));
  return key;
}
