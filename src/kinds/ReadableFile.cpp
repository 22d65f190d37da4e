#include "kinds/ReadableFile.h"

#include "common/FileHelpers.h"
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

ReadableFile ReadableFileOf(const BackupDevice* device, const std::string& storedPath, const Folder::Entry& stored) {
  ReadableFile file{ReadablePath(device, storedPath), stored.size, stored.regular};
  if (file.path != storedPath) {
    file.size = file.path.empty() ? 0 : VQGetFileSize(file.path.c_str());
    file.regular = !file.path.empty() && VQIsRegularFile(file.path.c_str()) != 0;
  }
  return file;
}
