#ifndef YH_CRYPTO_KEYBAG_H
#define YH_CRYPTO_KEYBAG_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The backup key bag of Manifest.plist: tag, big-endian length and value
// records. The head gives the password's salts and iteration counts; each
// class entry begins with a UUID and holds the class key wrapped by the key
// derived from the password.
struct KeyBag {
  struct ClassKey {
    uint32_t protectionClass = 0;
    uint32_t wrap = 0;  // bit 2: wrapped by the password key
    std::string wrappedKey;
  };

  uint32_t version = 0;
  uint32_t type = 0;
  std::string salt;
  uint32_t iterations = 0;
  // iOS 10.2 and later stretch the password with SHA-256 first.
  std::string doubleProtectionSalt;
  uint32_t doubleProtectionIterations = 0;
  std::vector<ClassKey> classKeys;

  bool HasDoubleProtection() const { return !doubleProtectionSalt.empty(); }
};

// The key bag, or nothing when the bytes are cut short or lack a salt, an
// iteration count or any class key of 40 bytes.
std::optional<KeyBag> ParseKeyBag(std::string_view bytes);

#endif
