#include "kinds/ReadableFile.h"

#include "common/FileHelpers.h"
#include "crypto/EncryptedBackup.h"
#include "index/Mbdb.h"
#include "session/BackupSession.h"

namespace {

std::optional<StoredKey> KeyOf(IndexReader& reader, EncryptedBackup& encrypted, const std::string& stored) {
  if (reader.Type() == BackupType::ManifestDb) return encrypted.ManifestDbKey(stored.substr(stored.rfind('/') + 1));
  auto& mbdb = static_cast<Mbdb&>(reader);
  const EncryptedBackup::KeyTexts& keys = encrypted.MbdbKeys([&mbdb] {
    EncryptedBackup::KeyTexts texts;
    for (const Mbdb::MBFileRecord* record : *mbdb.GetContentList()) texts[record->storedName()] = std::string(record->encryptionKey());
    return texts;
  });
  const auto key = keys.find(stored);
  if (key == keys.end()) return std::nullopt;
  return EncryptedBackup::MbdbKey(key->second);
}

}  // namespace

ReadableFile ReadableFileAt(const BackupDevice* device, IndexReader& reader, size_t position) {
  const std::string stored = reader.StoredNameAt(position);
  const Folder::Entry entry = reader.StoredAt(position);
  const BackupSession* session = SessionOf(device);
  EncryptedBackup* encrypted = session ? session->Encrypted() : nullptr;
  if (!encrypted) return {device->backupPath + stored, entry.size, entry.regular};
  ReadableFile file{encrypted->StoredFileCopy(stored, KeyOf(reader, *encrypted, stored)), 0, false};
  if (!file.path.empty()) {
    file.size = VQGetFileSize(file.path.c_str());
    file.regular = VQIsRegularFile(file.path.c_str()) != 0;
  }
  return file;
}
