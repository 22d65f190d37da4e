#ifndef YH_CRYPTO_KEYWRAP_H
#define YH_CRYPTO_KEYWRAP_H

#include <string_view>

#include "crypto/SecureBytes.h"

// RFC 3394 AES key unwrap through libgcrypt. Empty when the integrity check
// fails (a wrong key or damaged bytes) or the sizes do not fit.
SecureBytes UnwrapKey(const SecureBytes& keyEncryptionKey, std::string_view wrapped);

#endif
