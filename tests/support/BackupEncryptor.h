#ifndef YH_TESTS_SUPPORT_BACKUPENCRYPTOR_H
#define YH_TESTS_SUPPORT_BACKUPENCRYPTOR_H

#include <cstdint>
#include <string>

namespace yhtest {

// How the backup builder encrypts a backup. A sha256Iterations of 0 makes
// the key bag of an older backup (PBKDF2-SHA1 only); small counts keep the
// tests fast.
struct Encryption {
  std::string password;
  uint32_t iterations = 1;
  uint32_t sha256Iterations = 1;
};

// Makes the keys of one encrypted backup and encrypts as devices do, with
// libgcrypt directly: a key bag of classes 1 to 11 wrapped (RFC 3394) by the
// PBKDF2 key of the password, one random key per file wrapped by its class
// key, files in AES-256-CBC with a zero IV and PKCS#7 padding.
class BackupEncryptor {
 public:
  static constexpr uint32_t kFileClass = 4;
  static constexpr uint32_t kManifestClass = 3;

  explicit BackupEncryptor(const Encryption& encryption);

  std::string KeyBag() const { return keyBag_; }
  // The ManifestKey entry of Manifest.plist and the key it wraps.
  std::string ManifestKeyEntry() const { return manifestKeyEntry_; }
  const std::string& ManifestKey() const { return manifestKey_; }

  // A new random file key; *stored receives the class and wrapped key as
  // the index keeps them.
  std::string NewFileKey(uint32_t protectionClass, std::string* stored) const;

  static std::string Encrypt(const std::string& key, const std::string& plain);
  // Replaces the file with its ciphertext.
  static void EncryptFile(const std::string& path, const std::string& key);

 private:
  std::string Wrap(const std::string& keyEncryptionKey, const std::string& key) const;

  std::string classKeys_[12];
  std::string keyBag_;
  std::string manifestKey_;
  std::string manifestKeyEntry_;
};

// The `file` column of Manifest.db for an encrypted backup: a keyed archive
// of an MBFile whose EncryptionKey refers to an NSData object.
std::string ArchivedMBFile(const std::string& relativePath, const std::string& storedKey, uint32_t protectionClass,
                           uint64_t size);

}  // namespace yhtest

#endif
