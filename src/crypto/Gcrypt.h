#ifndef YH_CRYPTO_GCRYPT_H
#define YH_CRYPTO_GCRYPT_H

// Initialises libgcrypt with a small pool of secure memory for keys, unless
// the host already did. Safe to call before every use.
void EnsureGcrypt();

#endif
