#include "kinds/ReadableFile.h"

#include "crypto/EncryptedBackup.h"
#include "index/IndexReader.h"
#include "index/Mbdb.h"

namespace {

std::optional<StoredKey> KeyOf(const BackupDevice* device, EncryptedBackup& encrypted, const std::string& stored) {
  if (device->backupType == 1) return encrypted.ManifestDbKey(stored.substr(stored.rfind('/') + 1));
  auto* reader = static_cast<Mbdb*>(device->indexReader);
  const EncryptedBackup::KeyTexts& keys = encrypted.MbdbKeys([reader] {
    EncryptedBackup::KeyTexts texts;
    for (const Mbdb::MBFileRecord* record : *reader->GetContentList()) texts[record->storedName()] = std::string(record->encryptionKey());
    return texts;
  });
  const auto key = keys.find(stored);
  if (key == keys.end()) return std::nullopt;
  return EncryptedBackup::MbdbKey(key->second);
}

}  // namespace

std::string ReadablePath(const BackupDevice* device, const std::string& storedPath) {
  IndexReader* reader = ReaderOf(device);
  EncryptedBackup* encrypted = reader ? reader->Session().Encrypted() : nullptr;
  if (!encrypted) return storedPath;
  const std::string folder = device->backupPath;
  if (storedPath.compare(0, folder.size(), folder) != 0) return std::string();
  const std::string stored = storedPath.substr(folder.size());
  return encrypted->StoredFileCopy(stored, KeyOf(device, *encrypted, stored));
}
