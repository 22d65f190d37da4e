#ifndef YH_CRYPTO_STOREDKEY_H
#define YH_CRYPTO_STOREDKEY_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// A file's key as the index stores it: the protection class as a
// little-endian 32-bit number, then the key wrapped by that class's key.
struct StoredKey {
  uint32_t protectionClass = 0;
  std::string wrappedKey;
};

// Nothing when the bytes hold no more than the class.
std::optional<StoredKey> SplitStoredKey(std::string_view bytes);

#endif
