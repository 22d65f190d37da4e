#ifndef YH_TESTS_SUPPORT_BACKUPBUILDER_H
#define YH_TESTS_SUPPORT_BACKUPBUILDER_H

#include <plist/plist.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/BackupEncryptor.h"

namespace yhtest {

enum class IndexKind { Mbdb, ManifestDb };

// Writes a backup folder from a short description: Info.plist (XML),
// Manifest.plist (binary), Status.plist, the index of the chosen kind and the
// stored files under their hashed names. The one way every test, sample and
// benchmark makes a backup.
class BackupBuilder {
 public:
  explicit BackupBuilder(IndexKind kind);

  // Info.plist keys. Dates are seconds since 1970-01-01 UTC.
  BackupBuilder& InfoString(const std::string& key, const std::string& value);
  BackupBuilder& InfoDate(const std::string& key, int64_t unixSeconds);
  // Manifest.plist keys; Lockdown* go into its "Lockdown" dictionary.
  BackupBuilder& ManifestBool(const std::string& key, bool value);
  BackupBuilder& ManifestDate(const std::string& key, int64_t unixSeconds);
  BackupBuilder& LockdownString(const std::string& key, const std::string& value);
  // Write these bytes instead of the property list; empty bytes skip the file.
  BackupBuilder& RawInfoPlist(const std::string& bytes);
  BackupBuilder& RawManifestPlist(const std::string& bytes);

  // A stored file with the given contents.
  BackupBuilder& AddFile(const std::string& domain, const std::string& relativePath,
                         const std::string& contents);
  // A stored file of `size` zero bytes, written sparse (no data blocks): the
  // bulk of a large backup whose files are only measured, written fast.
  BackupBuilder& AddSparseFile(const std::string& domain, const std::string& relativePath, uint64_t size);
  // A device database made from SQL text (schema, then rows), stored like AddFile.
  BackupBuilder& AddDatabase(const std::string& domain, const std::string& relativePath,
                             const std::string& sql);
  // A database in write-ahead-log mode whose `walSql` rows live only in its
  // -wal file, stored beside it as the device leaves them in a backup.
  BackupBuilder& AddDatabaseWithWal(const std::string& domain, const std::string& relativePath,
                                    const std::string& sql, const std::string& walSql);
  // An index row with no stored file: a folder row, or a file not copied.
  BackupBuilder& AddDirectory(const std::string& domain, const std::string& relativePath);
  BackupBuilder& AddMissingFile(const std::string& domain, const std::string& relativePath);

  // Writes an encrypted backup: Manifest.plist gets IsEncrypted, the key bag
  // and (Manifest.db) the ManifestKey; every file record its wrapped key;
  // stored files and Manifest.db are written encrypted.
  BackupBuilder& Encrypt(const Encryption& encryption);

  // Writes the backup into `folder` (created) and returns its path ending in "/".
  std::string Write(const std::string& folder) const;

  // The name a file is stored under, relative to the backup folder:
  // "ab/abcdef..." for Manifest.db, "abcdef..." for Manifest.mbdb.
  std::string StoredPath(const std::string& domain, const std::string& relativePath) const;
  static std::string FileId(const std::string& domain, const std::string& relativePath);

 private:
  struct Entry {
    std::string domain;
    std::string relativePath;
    std::string contents;
    bool isDatabase = false;
    bool present = true;
    bool isDirectory = false;
    bool isSparse = false;
    uint64_t sparseSize = 0;
  };
  struct PlistValue {
    std::string key;
    enum { String, Date, Bool } type;
    std::string text;
    int64_t seconds = 0;
    bool flag = false;
  };

  static plist_t ToDictionary(const std::vector<PlistValue>& values);
  // The stored key of each file entry, by entry position.
  using StoredKeys = std::map<size_t, std::string>;
  std::string MbdbIndex(const std::string& root, const StoredKeys& keys) const;
  std::string ManifestDbIndex(const std::string& root, const StoredKeys& keys) const;
  void WriteStoredFiles(const std::string& root) const;
  void WriteEncrypted(const std::string& root) const;
  void WriteManifestPlist(const std::string& root, const BackupEncryptor* encryptor) const;

  IndexKind kind_;
  std::vector<PlistValue> info_;
  std::vector<PlistValue> manifest_;
  std::vector<PlistValue> lockdown_;
  bool rawInfo_ = false;
  bool rawManifest_ = false;
  std::string rawInfoBytes_;
  std::string rawManifestBytes_;
  std::vector<Entry> entries_;
  std::optional<Encryption> encryption_;
};

// The text of tests/schemas/<name>.sql (full CREATE statements of a real device database).
std::string Schema(const std::string& name);

// One Manifest.mbdb record as bytes, for tests that need shapes the builder
// does not make. Empty texts are written with the length 0xFFFF, as devices do.
struct MbdbRecord {
  std::string domain;
  std::string path;
  std::string linkTarget;
  std::string dataHash;
  std::string encryptionKey;
  uint16_t mode = 0x81A4;
  uint64_t inode = 0;
  uint32_t userId = 501;
  uint32_t groupId = 501;
  uint32_t modified = 0;
  uint32_t accessed = 0;
  uint32_t changed = 0;
  int64_t size = 0;
  uint8_t protectionClass = 0;
  std::vector<std::pair<std::string, std::string>> properties;

  std::string Bytes() const;
};
// The six bytes a Manifest.mbdb begins with: "mbdb" 0x05 0x00.
std::string MbdbSignature();

// The bytes of a file; "" when it cannot be read.
std::string ReadBytes(const std::string& path);
// Creates the folders above path, then writes the bytes.
void WriteFile(const std::string& path, const std::string& bytes);
// Creates the folders above path and a file of `size` zero bytes there without writing them.
void WriteSparseFile(const std::string& path, uint64_t size);
// Creates the folders above path and an SQLite database there, then runs the SQL text.
void WriteDatabase(const std::string& path, const std::string& sql);
// The bytes of a database in write-ahead-log mode and of its -wal file, in
// which the rows of `walSql` (run after `sql`) live and nowhere else.
struct DatabaseWithWal {
  std::string database;
  std::string wal;
};
DatabaseWithWal MakeDatabaseWithWal(const std::string& sql, const std::string& walSql);
// Lower-case hexadecimal SHA-1 of the bytes.
std::string Sha1Hex(const std::string& bytes);
// Lower-case hexadecimal SHA-256 of the bytes.
std::string Sha256Hex(const std::string& bytes);

// A fresh folder under the system's temporary folder, removed with its contents.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& Path() const { return path_; }  // ends in "/"

 private:
  std::string path_;
};

}  // namespace yhtest

#endif
