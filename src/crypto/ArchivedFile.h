#ifndef YH_CRYPTO_ARCHIVEDFILE_H
#define YH_CRYPTO_ARCHIVEDFILE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "crypto/StoredKey.h"

// What an encrypted backup needs of the `file` column of Manifest.db: a
// keyed archive of an MBFile whose EncryptionKey (data, or a reference to an
// object holding NS.data) is the protection class as a little-endian 32-bit
// number followed by the wrapped key. ProtectionClass, when present, names
// the class.
// Nothing when the blob is no keyed archive or holds no key.
std::optional<StoredKey> ReadArchivedFileKey(const void* blob, size_t size);

#endif
