#include "support/BackupBuilder.h"

#include <sqlite3.h>

#include <filesystem>

#include "support/NoteStoreBody.h"

namespace yhtest {
namespace {

// libplist 2.2 counts dates from 2001-01-01 in both encodings.
constexpr int64_t kSeconds1970To2001 = 978307200;
// Every file of a Manifest.mbdb backup carries this time: 2013-01-01 00:00:00 UTC.
constexpr uint32_t kFileTime = 1356998400;
constexpr uint16_t kFileMode = 0x81A4;
constexpr uint16_t kFolderMode = 0x41ED;
constexpr int kFileFlags = 1;
constexpr int kFolderFlags = 2;

plist_t Date(int64_t unixSeconds) { return plist_new_date(static_cast<int32_t>(unixSeconds - kSeconds1970To2001), 0); }

void WritePlist(const std::string& path, plist_t root, bool binary) {
  char* bytes = nullptr;
  uint32_t length = 0;
  if (binary) {
    plist_to_bin(root, &bytes, &length);
    WriteFile(path, std::string(bytes, length));
    plist_to_bin_free(bytes);
  } else {
    plist_to_xml(root, &bytes, &length);
    WriteFile(path, std::string(bytes, length));
    plist_to_xml_free(bytes);
  }
  plist_free(root);
}

void WriteRawOrSkip(const std::string& path, const std::string& bytes) {
  if (!bytes.empty()) WriteFile(path, bytes);
}

plist_t StatusPlist() {
  plist_t status = plist_new_dict();
  plist_dict_set_item(status, "BackupState", plist_new_string("new"));
  plist_dict_set_item(status, "Date", Date(kFileTime));
  plist_dict_set_item(status, "IsFullBackup", plist_new_bool(0));
  plist_dict_set_item(status, "SnapshotState", plist_new_string("finished"));
  plist_dict_set_item(status, "UUID", plist_new_string("6D5C4B3A-2918-4F7E-8D6C-5B4A39281706"));
  plist_dict_set_item(status, "Version", plist_new_string("3.3"));
  return status;
}

}  // namespace

BackupBuilder::BackupBuilder(IndexKind kind) : kind_(kind) {}

BackupBuilder& BackupBuilder::InfoString(const std::string& key, const std::string& value) {
  info_.push_back({key, PlistValue::String, value});
  return *this;
}

BackupBuilder& BackupBuilder::InfoDate(const std::string& key, int64_t unixSeconds) {
  info_.push_back({key, PlistValue::Date, "", unixSeconds});
  return *this;
}

BackupBuilder& BackupBuilder::ManifestBool(const std::string& key, bool value) {
  manifest_.push_back({key, PlistValue::Bool, "", 0, value});
  return *this;
}

BackupBuilder& BackupBuilder::ManifestDate(const std::string& key, int64_t unixSeconds) {
  manifest_.push_back({key, PlistValue::Date, "", unixSeconds});
  return *this;
}

BackupBuilder& BackupBuilder::LockdownString(const std::string& key, const std::string& value) {
  lockdown_.push_back({key, PlistValue::String, value});
  return *this;
}

BackupBuilder& BackupBuilder::RawInfoPlist(const std::string& bytes) {
  rawInfo_ = true;
  rawInfoBytes_ = bytes;
  return *this;
}

BackupBuilder& BackupBuilder::RawManifestPlist(const std::string& bytes) {
  rawManifest_ = true;
  rawManifestBytes_ = bytes;
  return *this;
}

BackupBuilder& BackupBuilder::AddFile(const std::string& domain, const std::string& relativePath,
                                      const std::string& contents) {
  entries_.push_back({domain, relativePath, contents});
  return *this;
}

BackupBuilder& BackupBuilder::AddSparseFile(const std::string& domain, const std::string& relativePath,
                                            uint64_t size) {
  entries_.push_back({domain, relativePath, "", false, true, false, true, size});
  return *this;
}

BackupBuilder& BackupBuilder::AddDatabase(const std::string& domain, const std::string& relativePath,
                                          const std::string& sql) {
  entries_.push_back({domain, relativePath, sql, true});
  return *this;
}

BackupBuilder& BackupBuilder::AddDatabaseWithWal(const std::string& domain, const std::string& relativePath,
                                                 const std::string& sql, const std::string& walSql) {
  const DatabaseWithWal files = MakeDatabaseWithWal(sql, walSql);
  AddFile(domain, relativePath, files.database);
  return AddFile(domain, relativePath + "-wal", files.wal);
}

BackupBuilder& BackupBuilder::AddDirectory(const std::string& domain, const std::string& relativePath) {
  entries_.push_back({domain, relativePath, "", false, false, true});
  return *this;
}

BackupBuilder& BackupBuilder::AddMissingFile(const std::string& domain, const std::string& relativePath) {
  entries_.push_back({domain, relativePath, "", false, false});
  return *this;
}

BackupBuilder& BackupBuilder::Encrypt(const Encryption& encryption) {
  encryption_ = encryption;
  return *this;
}

std::string BackupBuilder::Write(const std::string& folder) const {
  std::string root = folder;
  if (root.empty() || root.back() != '/') root += '/';
  std::filesystem::create_directories(root);

  if (rawInfo_) {
    WriteRawOrSkip(root + "Info.plist", rawInfoBytes_);
  } else {
    WritePlist(root + "Info.plist", ToDictionary(info_), false);
  }
  WritePlist(root + "Status.plist", StatusPlist(), true);
  WriteStoredFiles(root);
  if (encryption_) {
    WriteEncrypted(root);
    return root;
  }
  WriteManifestPlist(root, nullptr);
  if (kind_ == IndexKind::Mbdb) {
    WriteFile(root + "Manifest.mbdb", MbdbIndex(root, {}));
  } else {
    WriteDatabase(root + "Manifest.db", ManifestDbIndex(root, {}));
  }
  return root;
}

void BackupBuilder::WriteManifestPlist(const std::string& root, const BackupEncryptor* encryptor) const {
  if (rawManifest_) {
    WriteRawOrSkip(root + "Manifest.plist", rawManifestBytes_);
    return;
  }
  plist_t manifest = ToDictionary(manifest_);
  if (!lockdown_.empty()) plist_dict_set_item(manifest, "Lockdown", ToDictionary(lockdown_));
  if (encryptor) {
    const std::string bag = encryptor->KeyBag();
    plist_dict_set_item(manifest, "IsEncrypted", plist_new_bool(1));
    plist_dict_set_item(manifest, "BackupKeyBag", plist_new_data(bag.data(), bag.size()));
    if (kind_ == IndexKind::ManifestDb) {
      const std::string key = encryptor->ManifestKeyEntry();
      plist_dict_set_item(manifest, "ManifestKey", plist_new_data(key.data(), key.size()));
    }
  }
  WritePlist(root + "Manifest.plist", manifest, true);
}

void BackupBuilder::WriteStoredFiles(const std::string& root) const {
  for (const Entry& entry : entries_) {
    if (!entry.present || entry.isDirectory) continue;
    const std::string stored = root + StoredPath(entry.domain, entry.relativePath);
    if (entry.isDatabase) {
      WriteDatabase(stored, entry.contents);
    } else if (entry.isSparse) {
      WriteSparseFile(stored, entry.sparseSize);
    } else {
      WriteFile(stored, entry.contents);
    }
  }
}

// The index is made from the plain files (it records their sizes), then
// every stored file and Manifest.db are replaced by their ciphertext.
void BackupBuilder::WriteEncrypted(const std::string& root) const {
  const BackupEncryptor encryptor(*encryption_);
  WriteManifestPlist(root, &encryptor);
  StoredKeys stored;
  std::map<size_t, std::string> fileKeys;
  for (size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].isDirectory) continue;
    fileKeys[i] = encryptor.NewFileKey(BackupEncryptor::kFileClass, &stored[i]);
  }
  if (kind_ == IndexKind::Mbdb) {
    WriteFile(root + "Manifest.mbdb", MbdbIndex(root, stored));
  } else {
    WriteDatabase(root + "Manifest.db", ManifestDbIndex(root, stored));
    BackupEncryptor::EncryptFile(root + "Manifest.db", encryptor.ManifestKey());
  }
  for (const auto& [index, key] : fileKeys) {
    const Entry& entry = entries_[index];
    if (entry.present) BackupEncryptor::EncryptFile(root + StoredPath(entry.domain, entry.relativePath), key);
  }
}

std::string BackupBuilder::StoredPath(const std::string& domain, const std::string& relativePath) const {
  const std::string id = FileId(domain, relativePath);
  return kind_ == IndexKind::ManifestDb ? id.substr(0, 2) + "/" + id : id;
}

std::string BackupBuilder::FileId(const std::string& domain, const std::string& relativePath) {
  return Sha1Hex(domain + "-" + relativePath);
}

plist_t BackupBuilder::ToDictionary(const std::vector<PlistValue>& values) {
  plist_t dict = plist_new_dict();
  for (const PlistValue& value : values) {
    switch (value.type) {
      case PlistValue::String:
        plist_dict_set_item(dict, value.key.c_str(), plist_new_string(value.text.c_str()));
        break;
      case PlistValue::Date:
        plist_dict_set_item(dict, value.key.c_str(), Date(value.seconds));
        break;
      case PlistValue::Bool:
        plist_dict_set_item(dict, value.key.c_str(), plist_new_bool(value.flag));
        break;
    }
  }
  return dict;
}

// Stored files must be written first: a record carries its file's real size.
std::string BackupBuilder::MbdbIndex(const std::string& root, const StoredKeys& keys) const {
  std::string bytes = MbdbSignature();
  uint64_t inode = 1000;
  for (size_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    MbdbRecord record;
    if (const auto key = keys.find(i); key != keys.end()) {
      record.encryptionKey = key->second;
      record.protectionClass = BackupEncryptor::kFileClass;
    }
    record.domain = entry.domain;
    record.path = entry.relativePath;
    record.mode = entry.isDirectory ? kFolderMode : kFileMode;
    record.inode = inode++;
    record.modified = record.accessed = record.changed = kFileTime;
    if (entry.present && !entry.isDirectory) {
      const std::string stored = root + StoredPath(entry.domain, entry.relativePath);
      record.size = static_cast<int64_t>(std::filesystem::file_size(stored));
    }
    bytes += record.Bytes();
  }
  return bytes;
}

std::string BackupBuilder::ManifestDbIndex(const std::string& root, const StoredKeys& keys) const {
  // One transaction: a large index is written in seconds, not minutes.
  std::string sql = Schema("Manifest.db-ios14") + "BEGIN;\n";
  for (size_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    std::string file = "NULL";
    if (const auto key = keys.find(i); key != keys.end()) {
      const std::string stored = root + StoredPath(entry.domain, entry.relativePath);
      const uint64_t size = entry.present ? std::filesystem::file_size(stored) : 0;
      file = SqlBlob(ArchivedMBFile(entry.relativePath, key->second, BackupEncryptor::kFileClass, size));
    }
    char* row = sqlite3_mprintf("INSERT INTO Files (fileID, domain, relativePath, flags, file) VALUES (%Q, %Q, %Q, %d, %s);\n",
                                FileId(entry.domain, entry.relativePath).c_str(), entry.domain.c_str(),
                                entry.relativePath.c_str(), entry.isDirectory ? kFolderFlags : kFileFlags,
                                file.c_str());
    sql += row;
    sqlite3_free(row);
  }
  return sql + "COMMIT;\n";
}

}  // namespace yhtest
