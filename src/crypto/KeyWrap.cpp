#include "crypto/KeyWrap.h"

#include <gcrypt.h>

#include <algorithm>
#include <memory>
#include <string>

#include "crypto/Gcrypt.h"

namespace {

struct CipherCloser {
  void operator()(gcry_cipher_hd_t handle) const { gcry_cipher_close(handle); }
};
using Cipher = std::unique_ptr<std::remove_pointer_t<gcry_cipher_hd_t>, CipherCloser>;

Cipher OpenWrap(const SecureBytes& keyEncryptionKey) {
  EnsureGcrypt();
  int algorithm = 0;
  switch (keyEncryptionKey.Size()) {
    case 16: algorithm = GCRY_CIPHER_AES128; break;
    case 24: algorithm = GCRY_CIPHER_AES192; break;
    case 32: algorithm = GCRY_CIPHER_AES256; break;
    default: return nullptr;
  }
  gcry_cipher_hd_t handle = nullptr;
  if (gcry_cipher_open(&handle, algorithm, GCRY_CIPHER_MODE_AESWRAP, GCRY_CIPHER_SECURE) != 0) return nullptr;
  Cipher cipher(handle);
  if (gcry_cipher_setkey(handle, keyEncryptionKey.Data(), keyEncryptionKey.Size()) != 0) return nullptr;
  return cipher;
}

}  // namespace

SecureBytes UnwrapKey(const SecureBytes& keyEncryptionKey, std::string_view wrapped) {
  if (wrapped.size() < 24 || wrapped.size() % 8 != 0) return SecureBytes();
  Cipher cipher = OpenWrap(keyEncryptionKey);
  if (!cipher) return SecureBytes();
  SecureBytes key(wrapped.size() - 8);
  // libgcrypt's unwrap writes the integrity block too, so it wants the
  // wrapped length; only the key part is kept.
  SecureBytes output(wrapped.size());
  if (gcry_cipher_decrypt(cipher.get(), output.Data(), output.Size(), wrapped.data(), wrapped.size()) != 0) {
    return SecureBytes();
  }
  std::copy(output.Data(), output.Data() + key.Size(), key.Data());
  return key;
}
