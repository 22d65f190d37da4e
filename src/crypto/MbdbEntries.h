#ifndef YH_CRYPTO_MBDBENTRIES_H
#define YH_CRYPTO_MBDBENTRIES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The records of a Manifest.mbdb as their bytes, for rewriting the index of
// a decrypted copy: each keeps its encryption key apart, so that it can be
// written back without one and with the size of the plain file.
struct MbdbEntry {
  std::string domain;
  std::string path;
  std::string head;  // domain, path, link target and hash as stored
  std::string encryptionKey;
  std::string fixedBlock;  // 40 bytes: mode ... size, protection class, property count
  std::string properties;  // as stored

  bool IsRegularFile() const;
  uint64_t Size() const;
  // The record as stored, with no key and the given size.
  std::string PlainBytes(uint64_t size) const;
};

// The records of a whole index; nothing when the signature is wrong or a
// record is cut short.
std::optional<std::vector<MbdbEntry>> ReadMbdbEntries(std::string_view index);

#endif
