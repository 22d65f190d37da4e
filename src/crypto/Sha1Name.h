#ifndef YH_CRYPTO_SHA1NAME_H
#define YH_CRYPTO_SHA1NAME_H

#include <cstddef>
#include <string>
#include <string_view>

#include "common/HexName.h"

// SHA-1 through libgcrypt. The library is linked, not loaded at run time, so
// LoadGcry and UnloadGcry have nothing to do.
void LoadGcry();
void UnloadGcry();
unsigned int yh_gcry_md_get_algo_dlen(int algo);
void yh_gcry_md_hash_buffer(int algo, void* digest, const void* buffer, size_t length);

// The name a Manifest.mbdb backup stores a file under: the lower-case
// hexadecimal SHA-1 of domain + "-" + relative path; the digest alone.
HexNameBytes MbdbStoredDigest(std::string_view domain, std::string_view path);
std::string MbdbStoredName(std::string_view domain, std::string_view path);

#endif
