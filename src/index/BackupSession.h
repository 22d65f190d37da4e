#ifndef YH_INDEX_BACKUPSESSION_H
#define YH_INDEX_BACKUPSESSION_H

#include <memory>
#include <string>

#include "common/VqBase.h"

class EncryptedBackup;

// What one analysed backup keeps besides its index: the private folder that
// holds copies of its files (never inside the backup), the choices of the
// service that analysed it, and that service's own extractors. It dies with
// the device record, and the private folder with it.
class BackupSession {
 public:
  BackupSession();
  ~BackupSession();
  BackupSession(const BackupSession&) = delete;
  BackupSession& operator=(const BackupSession&) = delete;

  // A folder of mode 0700 in the system's temporary folder, made on the first
  // call and removed with everything in it when the session ends; ends in
  // "/". Empty when it cannot be made.
  const std::string& PrivateFolder();

  // A fresh sub-folder of the private folder for one copy; empty when none
  // can be made.
  std::string NewCopyFolder();

  // Whether the rows a database keeps in its -wal file count. The described
  // answers read each database file alone; the current service reads both.
  bool ReadsWal() const { return readsWal_; }
  void SetReadsWal(bool reads) { readsWal_ = reads; }

  // The current service's extractors, owned here so that they die with the
  // record; NULL for a backup analysed by the described service.
  std::unique_ptr<VqBase> currentKinds;

  // The keys of an unlocked encrypted backup and its decrypted copies; NULL
  // for a plain backup or before UnlockBackup.
  EncryptedBackup* Encrypted() const { return encrypted_.get(); }
  void SetEncrypted(std::unique_ptr<EncryptedBackup> encrypted);

 private:
  std::string folder_;
  std::unique_ptr<EncryptedBackup> encrypted_;
  unsigned copies_ = 0;
  bool readsWal_ = false;
};

#endif
