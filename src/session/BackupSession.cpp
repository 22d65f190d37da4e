#include "session/BackupSession.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "crypto/EncryptedBackup.h"

namespace {

// The host's choice, else $TMPDIR when absolute, else /tmp; ends in "/".
std::string TemporaryRoot(const std::string& chosen) {
  const char* tmp = std::getenv("TMPDIR");
  std::string root = !chosen.empty() ? chosen : tmp && tmp[0] == '/' ? tmp : "/tmp";
  if (root.back() != '/') root += '/';
  return root;
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
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

const std::string& BackupSession::PrivateFolder() {
  if (!folder_.empty()) return folder_;
  std::string pattern = TemporaryRoot(temporaryRoot_) + "libYH-XXXXXX";
  // mkdtemp makes the folder with mode 0700: nobody else may read the copies.
  if (mkdtemp(pattern.data())) folder_ = pattern + "/";
  return folder_;
}

std::string BackupSession::NewCopyFolder() {
  const std::string& root = PrivateFolder();
  if (root.empty()) return std::string();
  const std::string folder = root + std::to_string(++copies_) + "/";
  return mkdir(folder.c_str(), 0700) == 0 ? folder : std::string();
}

void BackupSession::SetReader(std::unique_ptr<IndexReader> reader) { reader_ = std::move(reader); }

void BackupSession::SetEncrypted(std::unique_ptr<EncryptedBackup> encrypted) { encrypted_ = std::move(encrypted); }
