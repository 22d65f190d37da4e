#ifndef YH_CRYPTO_BACKUPKEYS_H
#define YH_CRYPTO_BACKUPKEYS_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "crypto/SecureBytes.h"
#include "crypto/StoredKey.h"

// The class keys of an encrypted backup, unwrapped with its password, and
// the unwrapping of each file's own key with them.
class BackupKeys {
 public:
  enum class Unlock { Unlocked, WrongPassword, NotEncrypted, KeyBagDamaged };

  // Reads Manifest.plist of the backup folder (ending in "/"). The password
  // is stretched once here; *keys is set only when Unlocked.
  static Unlock Open(const std::string& backupPath, std::string_view password, std::unique_ptr<BackupKeys>* keys);

  // The key of a file from its stored form: the protection class as a
  // little-endian 32-bit number, then the 40-byte wrap. Empty when the class
  // is unknown or the wrap does not check.
  SecureBytes FileKey(std::string_view classAndWrappedKey) const;
  SecureBytes FileKey(const StoredKey& key) const;

  // The key of Manifest.db; empty for backups that have none (Manifest.mbdb).
  SecureBytes ManifestKey() const;
  bool HasManifestKey() const { return !manifestKey_.empty(); }

 private:
  std::map<uint32_t, SecureBytes> classKeys_;
  std::string manifestKey_;
};

#endif
