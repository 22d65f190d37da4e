#include "crypto/Sha1Name.h"

#include <gcrypt.h>

void LoadGcry() {}

void UnloadGcry() {}

unsigned int yh_gcry_md_get_algo_dlen(int algo) { return gcry_md_get_algo_dlen(algo); }

void yh_gcry_md_hash_buffer(int algo, void* digest, const void* buffer, size_t length) {
  gcry_md_hash_buffer(algo, digest, buffer, length);
}

HexNameBytes MbdbStoredDigest(std::string_view domain, std::string_view path) {
  std::string text;
  text.reserve(domain.size() + 1 + path.size());
  text.append(domain).append("-").append(path);
  HexNameBytes digest;
  yh_gcry_md_hash_buffer(GCRY_MD_SHA1, digest.data(), text.data(), text.size());
  return digest;
}

std::string MbdbStoredName(std::string_view domain, std::string_view path) {
  return HexNameOf(MbdbStoredDigest(domain, path));
}
