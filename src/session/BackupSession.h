#ifndef YH_SESSION_BACKUPSESSION_H
#define YH_SESSION_BACKUPSESSION_H

#include <memory>
#include <string>

#include "common/VqBase.h"
#include "index/BackupType.h"
#include "index/IndexReader.h"
#include "libYH.h"

class CurrentKinds;
class EncryptedBackup;

// Deletes the current service's extractors; defined beside them, so that a
// session needs no more than their name.
struct CurrentKindsDeleter {
  void operator()(CurrentKinds* kinds) const;
};

// What one backup record keeps once it is analysed or unlocked: the reader
// of its index, the private folder that holds copies of its files (never
// inside the backup), the keys of an encrypted backup, the choices of the
// service that analysed it and that service's own extractors. The record's
// indexReader field holds it; it dies with the record, and the private
// folder with it.
class BackupSession : public VqBase {
 public:
  BackupSession();
  ~BackupSession() override;
  BackupSession(const BackupSession&) = delete;
  BackupSession& operator=(const BackupSession&) = delete;

  // The reader of the record's index; NULL before analysis.
  IndexReader* Reader() const { return reader_.get(); }
  // Replaces the reader (a new analysis); everything else stays.
  void SetReader(std::unique_ptr<IndexReader> reader);

  // A folder of mode 0700 in the host's temporary folder (SetTemporaryRoot)
  // or else the system's, made on the first call and removed with
  // everything in it when the session ends; ends in "/". Empty when it
  // cannot be made.
  const std::string& PrivateFolder();

  // The folder the host chose for the private folder, an absolute path;
  // it counts until the private folder is made.
  void SetTemporaryRoot(std::string folder) { temporaryRoot_ = std::move(folder); }

  // A fresh sub-folder of the private folder for one copy; empty when none
  // can be made.
  std::string NewCopyFolder();

  // Whether the rows a database keeps in its -wal file count. The described
  // answers read each database file alone; the current service reads both.
  bool ReadsWal() const { return readsWal_; }
  void SetReadsWal(bool reads) { readsWal_ = reads; }

  // The current service's extractors, owned here so that they die with the
  // record; NULL for a backup analysed by the described service.
  std::unique_ptr<CurrentKinds, CurrentKindsDeleter> currentKinds;

  // The keys of an unlocked encrypted backup and its decrypted copies; NULL
  // for a plain backup or before UnlockBackup.
  EncryptedBackup* Encrypted() const { return encrypted_.get(); }
  void SetEncrypted(std::unique_ptr<EncryptedBackup> encrypted);

 private:
  std::unique_ptr<IndexReader> reader_;
  std::string temporaryRoot_;
  std::string folder_;
  std::unique_ptr<EncryptedBackup> encrypted_;
  unsigned copies_ = 0;
  bool readsWal_ = false;
};

// The session of a record whose index kind is known; NULL before analysis
// or unlocking, and for any other type.
inline BackupSession* SessionOf(const BackupDevice* device) {
  if (!BackupTypeOf(device)) return nullptr;
  return static_cast<BackupSession*>(device->indexReader);
}

// The session of a record of a known index kind, made now when it has none.
inline BackupSession& SessionFor(BackupDevice* device) {
  if (!SessionOf(device)) device->indexReader = new BackupSession;
  return *SessionOf(device);
}

// The reader of an analysed record; NULL otherwise.
inline IndexReader* ReaderOf(const BackupDevice* device) {
  BackupSession* session = SessionOf(device);
  return session ? session->Reader() : nullptr;
}

#endif
