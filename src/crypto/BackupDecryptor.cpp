#include "crypto/BackupDecryptor.h"

#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "common/Database.h"
#include "common/FileHelpers.h"
#include "common/PlistHelpers.h"
#include "crypto/ArchivedFile.h"
#include "crypto/AtomicFile.h"
#include "crypto/BackupKeys.h"
#include "crypto/FileCipher.h"
#include "crypto/MbdbEntries.h"
#include "crypto/StoredKey.h"
#include "crypto/Sha1Name.h"
#include "platform/FileSystem.h"

namespace {

// One stored file to decrypt: its name below the backup folder and its key.
struct StoredFile {
  std::string name;
  StoredKey key;
  uint64_t cipherSize = 0;
  uint64_t plainSize = 0;
  bool decrypted = false;
};

std::string WithSlash(std::string path) {
  if (path.empty() || path.back() != '/') path += '/';
  return path;
}

// Missing, or a folder with nothing in it.
bool IsNewOrEmpty(const std::string& path) {
  platform::PathInfo info;
  if (!platform::StatNoFollow(path, &info)) return errno == ENOENT;
  return info.folder && !info.link && platform::ListFolder(path).empty();
}

bool IsHexName(const std::string& name) {
  if (name.size() < 2) return false;
  for (char c : name) {
    if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
  }
  return true;
}

int32_t KeyResult(BackupKeys::Unlock unlock) {
  switch (unlock) {
    case BackupKeys::Unlock::Unlocked: return YHUnlocked;
    case BackupKeys::Unlock::WrongPassword: return YHWrongPassword;
    case BackupKeys::Unlock::NotEncrypted: return YHNotEncrypted;
    case BackupKeys::Unlock::KeyBagDamaged: break;
  }
  return YHKeyBagDamaged;
}

class Decryptor {
 public:
  Decryptor(std::string backup, std::string out, const BackupKeys& keys, YHDecryptProgressCallback progress,
            void* userData)
      : backup_(std::move(backup)), out_(std::move(out)), keys_(keys), progress_(progress), userData_(userData) {}

  int32_t FromManifestDb();
  int32_t FromMbdb();

 private:
  bool DecryptInto(const SecureBytes& key, const std::string& source, const std::string& path, Padding padding,
                   uint64_t* written);
  void DecryptOne(StoredFile* file);
  void DecryptAll(std::vector<StoredFile>* files);
  void Report(const char* skipped);
  bool CopyRest();
  int32_t Finish(bool indexWritten);

  std::string backup_;
  std::string out_;
  const BackupKeys& keys_;
  YHDecryptProgressCallback progress_;
  void* userData_;
  YHDecryptProgress status_{};
  bool gaps_ = false;
};

bool Decryptor::DecryptInto(const SecureBytes& key, const std::string& source, const std::string& path,
                            Padding padding, uint64_t* written) {
  return WriteAtomically(path, [&](int fd) {
    return DecryptFileTo(key, source, fd, padding, written) == FileCipherResult::Done;
  });
}

void Decryptor::Report(const char* skipped) {
  if (skipped) gaps_ = true;
  if (!progress_) return;
  status_.skipped = skipped;
  progress_(&status_, userData_);
}

void Decryptor::DecryptOne(StoredFile* file) {
  const std::string slash = file->name.substr(0, file->name.find('/') == std::string::npos ? 0 : 2);
  if (!slash.empty()) platform::MakePrivateFolder(out_ + slash);
  const SecureBytes key = keys_.FileKey(file->key);
  file->decrypted =
      !key.Empty() && DecryptInto(key, backup_ + file->name, out_ + file->name, Padding::Strip, &file->plainSize);
}

// Two files at a time: the copies in and out of the kernel, not AES, bound
// the speed, and a second core halves them. Only the calling thread reports.
void Decryptor::DecryptAll(std::vector<StoredFile>* files) {
  status_.filesTotal = static_cast<uint32_t>(files->size());
  for (StoredFile& file : *files) {
    file.cipherSize = VQGetFileSize((backup_ + file.name).c_str());
    status_.bytesTotal += file.cipherSize;
  }
  std::atomic<size_t> next{0};
  std::mutex mutex;
  std::vector<size_t> finished;
  const auto report = [&] {
    std::vector<size_t> done;
    {
      const std::lock_guard<std::mutex> lock(mutex);
      done.swap(finished);
    }
    for (size_t i : done) {
      const StoredFile& file = (*files)[i];
      ++status_.filesDone;
      status_.bytesDone += file.cipherSize;
      Report(file.decrypted ? nullptr : file.name.c_str());
    }
  };
  const auto work = [&](bool reports) {
    for (size_t i = next++; i < files->size(); i = next++) {
      DecryptOne(&(*files)[i]);
      {
        const std::lock_guard<std::mutex> lock(mutex);
        finished.push_back(i);
      }
      if (reports) report();
    }
  };
  std::thread helper;
  if (std::thread::hardware_concurrency() > 1 && files->size() > 1) helper = std::thread(work, false);
  work(true);
  if (helper.joinable()) helper.join();
  report();
}

// The other property lists of the top folder (Info.plist, Status.plist, ...)
// as they are. Stored files of Manifest.mbdb backups lie there too.
bool Decryptor::CopyRest() {
  if (!platform::IsFolder(backup_)) return false;
  for (const std::string& name : platform::ListFolder(backup_)) {
    const bool plist = name.size() > 6 && name.compare(name.size() - 6, 6, ".plist") == 0;
    if (!plist || name == "Manifest.plist") continue;
    if (!VQIsRegularFile((backup_ + name).c_str())) continue;
    if (!CopyAtomically(backup_ + name, out_ + name)) return false;
  }
  return true;
}

// Manifest.plist comes last: until it is there the copy is no backup.
int32_t Decryptor::Finish(bool indexWritten) {
  if (!indexWritten || !CopyRest()) return YHWriteFailed;
  plist_t manifest = ReadPlist((backup_ + "Manifest.plist").c_str());
  if (!manifest) return YHWriteFailed;
  plist_dict_set_item(manifest, "IsEncrypted", plist_new_bool(0));
  plist_dict_remove_item(manifest, "ManifestKey");
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(manifest, &bytes, &length);
  plist_free(manifest);
  const bool written = bytes && WriteBytesAtomically(out_ + "Manifest.plist", std::string(bytes, length));
  free(bytes);
  if (!written) return YHWriteFailed;
  return gaps_ ? YHDecryptedWithGaps : YHUnlocked;
}

int32_t Decryptor::FromManifestDb() {
  const std::string partial = out_ + "Manifest.db.partial";
  uint64_t size = 0;
  if (!DecryptInto(keys_.ManifestKey(), backup_ + "Manifest.db", partial, Padding::StripToPages, &size)) {
    return YHKeyBagDamaged;
  }
  std::vector<StoredFile> files;
  {
    Database database(partial);
    // Regular files have flags 1; some writers leave 0, so a row with a key
    // counts as a file too.
    Database::Statement rows(database, "select fileID, file, flags = 1 from Files");
    while (rows.Step()) {
      StoredFile file;
      const char* id = rows.Text(0);
      if (!id || !IsHexName(id)) continue;
      const auto key = ReadArchivedFileKey(rows.Blob(1), static_cast<size_t>(rows.Bytes(1)));
      const char* isFile = rows.Text(2);
      if (!key && !(isFile && isFile[0] == '1')) continue;
      file.name = std::string(id).substr(0, 2) + "/" + id;
      if (key) file.key = *key;
      files.push_back(std::move(file));
    }
  }
  DecryptAll(&files);
  const bool indexWritten = platform::RenameReplacing(partial, out_ + "Manifest.db");
  return Finish(indexWritten);
}

int32_t Decryptor::FromMbdb() {
  const std::optional<std::string> index = ReadRegularFile(backup_ + "Manifest.mbdb");
  std::optional<std::vector<MbdbEntry>> entries;
  if (index) entries = ReadMbdbEntries(*index);
  if (!entries) return YHNoBackup;
  std::vector<StoredFile> files;
  std::vector<size_t> entryOf;
  for (size_t i = 0; i < entries->size(); ++i) {
    const MbdbEntry& entry = (*entries)[i];
    if (!entry.IsRegularFile()) continue;
    StoredFile file;
    file.name = MbdbStoredName(entry.domain, entry.path);
    if (const auto key = SplitStoredKey(entry.encryptionKey)) file.key = *key;
    files.push_back(std::move(file));
    entryOf.push_back(i);
  }
  DecryptAll(&files);
  std::vector<uint64_t> sizes(entries->size());
  for (size_t i = 0; i < entries->size(); ++i) sizes[i] = (*entries)[i].Size();
  for (size_t j = 0; j < files.size(); ++j) {
    if (files[j].decrypted) sizes[entryOf[j]] = files[j].plainSize;
  }
  std::string plain(index->data(), 6);
  for (size_t i = 0; i < entries->size(); ++i) plain += (*entries)[i].PlainBytes(sizes[i]);
  return Finish(WriteBytesAtomically(out_ + "Manifest.mbdb", plain));
}

}  // namespace

int32_t OpenBackupKeys(const std::string& backup, bool manifestDb, const std::string& password,
                       std::unique_ptr<BackupKeys>* keys) {
  std::unique_ptr<BackupKeys> opened;
  const BackupKeys::Unlock unlock = BackupKeys::Open(backup, password, &opened);
  if (unlock != BackupKeys::Unlock::Unlocked) return KeyResult(unlock);
  if (manifestDb && !opened->HasManifestKey()) return YHKeyBagDamaged;
  *keys = std::move(opened);
  return YHUnlocked;
}

int32_t DecryptBackupFolder(const std::string& backupFolder, const std::string& outFolder,
                            const std::string& password, YHDecryptProgressCallback progress, void* userData) {
  const std::string backup = WithSlash(backupFolder);
  const std::string out = WithSlash(outFolder);
  const bool isDb = VQIsRegularFile((backup + "Manifest.db").c_str());
  if (!isDb && !VQIsRegularFile((backup + "Manifest.mbdb").c_str())) return YHNoBackup;
  if (!IsNewOrEmpty(outFolder)) return YHOutputNotEmpty;
  std::unique_ptr<BackupKeys> keys;
  const int32_t unlock = OpenBackupKeys(backup, isDb, password, &keys);
  if (unlock != YHUnlocked) return unlock;
  if (!platform::MakePrivateFolder(outFolder) && !platform::IsFolder(outFolder)) return YHWriteFailed;
  Decryptor decryptor(backup, out, *keys, progress, userData);
  return isDb ? decryptor.FromManifestDb() : decryptor.FromMbdb();
}
