#include "session/BackupSession.h"

#include "crypto/EncryptedBackup.h"
#include "platform/FileSystem.h"

namespace {

// The host's choice, else the system's folder for temporary files; ends in "/".
std::string TemporaryRoot(const std::string& chosen) {
  if (chosen.empty()) return platform::TemporaryFolder();
  return chosen.back() == '/' ? chosen : chosen + "/";
}

}  // namespace

BackupSession::BackupSession() = default;

// The extractors go before the reader whose records they read, the
// decrypted copies close before their folder goes.
BackupSession::~BackupSession() {
  currentKinds.reset();
  reader_.reset();
  encrypted_.reset();
  if (folder_.empty()) return;
  platform::RemoveTree(folder_);
}

const std::string& BackupSession::PrivateFolder() {
  if (!folder_.empty()) return folder_;
  // Private to the user: nobody else may read the copies.
  folder_ = platform::MakeUniqueFolder(TemporaryRoot(temporaryRoot_), "libYH-");
  return folder_;
}

std::string BackupSession::NewCopyFolder() {
  const std::string& root = PrivateFolder();
  if (root.empty()) return std::string();
  const std::string folder = root + std::to_string(++copies_) + "/";
  return platform::MakePrivateFolder(folder) ? folder : std::string();
}

void BackupSession::SetReader(std::unique_ptr<IndexReader> reader) { reader_ = std::move(reader); }

void BackupSession::SetEncrypted(std::unique_ptr<EncryptedBackup> encrypted) { encrypted_ = std::move(encrypted); }
