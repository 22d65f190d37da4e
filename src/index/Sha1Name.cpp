#include "index/Sha1Name.h"

#include <gcrypt.h>

#include <vector>

void LoadGcry() {}

void UnloadGcry() {}

unsigned int yh_gcry_md_get_algo_dlen(int algo) { return gcry_md_get_algo_dlen(algo); }

void yh_gcry_md_hash_buffer(int algo, void* digest, const void* buffer, size_t length) {
  gcry_md_hash_buffer(algo, digest, buffer, length);
}

std::string MbdbStoredName(const std::string& domain, const std::string& path) {
  const std::string text = domain + "-" + path;
  std::vector<unsigned char> digest(yh_gcry_md_get_algo_dlen(GCRY_MD_SHA1));
  yh_gcry_md_hash_buffer(GCRY_MD_SHA1, digest.data(), text.data(), text.size());
  // Two lower-case hex digits a byte, as "%02x" would write them: a printf
  // per byte costs more than the hash itself.
  static const char kDigits[] = "0123456789abcdef";
  std::string name;
  name.reserve(2 * digest.size());
  for (unsigned char byte : digest) {
    name += kDigits[byte >> 4];
    name += kDigits[byte & 0xF];
  }
  return name;
}
