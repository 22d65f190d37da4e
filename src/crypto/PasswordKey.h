#ifndef YH_CRYPTO_PASSWORDKEY_H
#define YH_CRYPTO_PASSWORDKEY_H

#include <string_view>

#include "crypto/KeyBag.h"
#include "crypto/SecureBytes.h"

// The 32-byte key that unwraps the class keys: PBKDF2-HMAC-SHA1 over the
// key bag's SALT and ITER, applied to the password itself on older backups
// and, from iOS 10.2, to PBKDF2-HMAC-SHA256 of the password over DPSL and
// DPIC. Empty when libgcrypt refuses the parameters.
SecureBytes DerivePasswordKey(const KeyBag& bag, std::string_view password);

#endif
