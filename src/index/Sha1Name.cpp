#include "index/Sha1Name.h"

#include <gcrypt.h>

#include <cstdio>
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
  std::string name;
  char hex[3];
  for (unsigned char byte : digest) {
    std::snprintf(hex, sizeof hex, "%02x", byte);
    name += hex;
  }
  return name;
}
