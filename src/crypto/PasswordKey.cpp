#include "crypto/PasswordKey.h"

#include <gcrypt.h>

#include "crypto/Gcrypt.h"

namespace {

constexpr size_t kKeySize = 32;

SecureBytes Pbkdf2(int hash, const void* secret, size_t secretSize, const std::string& salt,
                   unsigned long iterations) {
  SecureBytes key(kKeySize);
  if (gcry_kdf_derive(secret, secretSize, GCRY_KDF_PBKDF2, hash, salt.data(), salt.size(), iterations,
                      key.Size(), key.Data()) != 0) {
    return SecureBytes();
  }
  return key;
}

}  // namespace

SecureBytes DerivePasswordKey(const KeyBag& bag, std::string_view password) {
  EnsureGcrypt();
  if (!bag.HasDoubleProtection()) {
    return Pbkdf2(GCRY_MD_SHA1, password.data(), password.size(), bag.salt, bag.iterations);
  }
  const SecureBytes first = Pbkdf2(GCRY_MD_SHA256, password.data(), password.size(), bag.doubleProtectionSalt,
                                   bag.doubleProtectionIterations);
  if (first.Empty()) return SecureBytes();
  return Pbkdf2(GCRY_MD_SHA1, first.Data(), first.Size(), bag.salt, bag.iterations);
}
