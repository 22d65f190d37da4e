#include "index/BackupSession.h"

#include "crypto/EncryptedBackup.h"
#include "platform/FileSystem.h"

BackupSession::BackupSession() = default;

// The decrypted copies close before their folder goes.
BackupSession::~BackupSession() {
  encrypted_.reset();
  if (folder_.empty()) return;
  platform::RemoveTree(folder_);
}

const std::string& BackupSession::PrivateFolder() {
  if (!folder_.empty()) return folder_;
  // Private to the user: nobody else may read the copies.
  folder_ = platform::MakeUniqueFolder(platform::TemporaryFolder(), "libYH-");
  return folder_;
}

std::string BackupSession::NewCopyFolder() {
  const std::string& root = PrivateFolder();
  if (root.empty()) return std::string();
  const std::string folder = root + std::to_string(++copies_) + "/";
  return platform::MakePrivateFolder(folder) ? folder : std::string();
}

void BackupSession::SetEncrypted(std::unique_ptr<EncryptedBackup> encrypted) { encrypted_ = std::move(encrypted); }
