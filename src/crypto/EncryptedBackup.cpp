#include "crypto/EncryptedBackup.h"

#include "crypto/ArchivedFile.h"
#include "crypto/AtomicFile.h"
#include "crypto/FileCipher.h"

namespace {

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// Copies are named by a counter, so that no stored name (of any shape a
// crafted index holds) decides where a copy is written.
std::string CopyName(size_t number) { return "file-" + std::to_string(number); }

bool Decrypt(const SecureBytes& key, const std::string& source, const std::string& copy, Padding padding) {
  uint64_t written = 0;
  return !key.Empty() && WriteAtomically(copy, [&](int fd) {
           return DecryptFileTo(key, source, fd, padding, &written) == FileCipherResult::Done;
         });
}

}  // namespace

EncryptedBackup::EncryptedBackup(std::unique_ptr<BackupKeys> keys, std::string backupPath, std::string folder)
    : keys_(std::move(keys)), backupPath_(std::move(backupPath)), folder_(std::move(folder)) {}

// The statement goes before the database it belongs to.
EncryptedBackup::~EncryptedBackup() {
  keyLookup_.reset();
  index_.reset();
}

std::string EncryptedBackup::ManifestDbCopy() {
  if (!manifestDb_.empty()) return manifestDb_;
  const std::string copy = folder_ + "Manifest.db";
  if (!Decrypt(keys_->ManifestKey(), backupPath_ + "Manifest.db", copy, Padding::StripToPages)) return std::string();
  manifestDb_ = copy;
  return manifestDb_;
}

std::optional<StoredKey> EncryptedBackup::ManifestDbKey(const std::string& fileId) {
  if (!keyLookup_) {
    if (ManifestDbCopy().empty()) return std::nullopt;
    index_ = std::make_unique<Database>(manifestDb_);
    keyLookup_ = std::make_unique<Database::Statement>(*index_, "select file from Files where fileID = ?");
  }
  if (!keyLookup_->BindText(1, fileId) || !keyLookup_->Step()) return std::nullopt;
  return ReadArchivedFileKey(keyLookup_->Blob(0), static_cast<size_t>(keyLookup_->Bytes(0)));
}

std::optional<StoredKey> EncryptedBackup::MbdbKey(const std::string& hexKey) {
  if (hexKey.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (size_t i = 0; i < hexKey.size(); i += 2) {
    const int high = HexDigit(hexKey[i]);
    const int low = HexDigit(hexKey[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<char>(high << 4 | low));
  }
  return SplitStoredKey(bytes);
}

std::string EncryptedBackup::StoredFileCopy(const std::string& storedName, const std::optional<StoredKey>& key) {
  const auto known = copies_.find(storedName);
  if (known != copies_.end()) return known->second;
  std::string copy = folder_ + CopyName(copies_.size());
  if (!key || !Decrypt(keys_->FileKey(*key), backupPath_ + storedName, copy, Padding::Strip)) copy.clear();
  copies_[storedName] = copy;
  return copy;
}

const EncryptedBackup::KeyTexts& EncryptedBackup::MbdbKeys(const std::function<KeyTexts()>& fill) {
  if (!mbdbKeys_) mbdbKeys_ = std::make_unique<const KeyTexts>(fill());
  return *mbdbKeys_;
}
