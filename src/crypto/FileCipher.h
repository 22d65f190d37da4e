#ifndef YH_CRYPTO_FILECIPHER_H
#define YH_CRYPTO_FILECIPHER_H

#include <cstdint>
#include <string>

#include "crypto/SecureBytes.h"

// Stored files of an encrypted backup: AES-256-CBC under the file's own key,
// a zero IV, PKCS#7 padding.
enum class FileCipherResult {
  Done,
  Unreadable,  // the stored file cannot be opened or read
  Damaged,     // not whole blocks, or a wrong key size
  WriteFailed,
};

enum class Padding {
  // Stored files: a valid padding is removed; the size in the index may be
  // stale, so the file is never cut to it.
  Strip,
  // The SQLite index may be stored unpadded: the padding goes only when what
  // stays is whole 512-byte pages.
  StripToPages,
};

// Decrypts `source` into the open file `output`, writing from its current
// position. *written receives the plain length.
FileCipherResult DecryptFileTo(const SecureBytes& key, const std::string& source, int output, Padding padding,
                               uint64_t* written);

#endif
