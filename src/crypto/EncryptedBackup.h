#ifndef YH_CRYPTO_ENCRYPTEDBACKUP_H
#define YH_CRYPTO_ENCRYPTEDBACKUP_H

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "common/Database.h"
#include "crypto/BackupKeys.h"
#include "crypto/StoredKey.h"

// An unlocked backup read in place: its index and the stored files that
// answers need are decrypted on demand into a private folder, each once.
class EncryptedBackup {
 public:
  // `backupPath` and `folder` end in "/"; `folder` is private (0700) and
  // lies outside the backup.
  EncryptedBackup(std::unique_ptr<BackupKeys> keys, std::string backupPath, std::string folder);
  ~EncryptedBackup();
  EncryptedBackup(const EncryptedBackup&) = delete;
  EncryptedBackup& operator=(const EncryptedBackup&) = delete;

  // The decrypted copy of Manifest.db; "" when it cannot be decrypted.
  std::string ManifestDbCopy();

  // The key of a stored file: of Manifest.db, looked up by fileID in the
  // decrypted index when first asked; of Manifest.mbdb, from the record's
  // key as the index reader keeps it (hexadecimal).
  std::optional<StoredKey> ManifestDbKey(const std::string& fileId);
  static std::optional<StoredKey> MbdbKey(const std::string& hexKey);

  // The decrypted copy of a stored file (its name below the backup folder);
  // "" when it is missing, damaged or its key does not unwrap.
  std::string StoredFileCopy(const std::string& storedName, const std::optional<StoredKey>& key);

  // A Manifest.mbdb backup's file keys by stored name, as `fill` gives them
  // on the first call (the index lists them record by record).
  using KeyTexts = std::unordered_map<std::string, std::string>;
  const KeyTexts& MbdbKeys(const std::function<KeyTexts()>& fill);

 private:
  std::unique_ptr<BackupKeys> keys_;
  std::string backupPath_;
  std::string folder_;
  std::string manifestDb_;
  std::unique_ptr<Database> index_;
  std::unique_ptr<Database::Statement> keyLookup_;
  std::map<std::string, std::string> copies_;
  std::unique_ptr<const KeyTexts> mbdbKeys_;  // stored name -> decrypted copy, "" when it failed
};

#endif
