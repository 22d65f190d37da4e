#include "platform/BackupFoldersOverride.h"

#include <mutex>

#include "platform/BackupFolders.h"

namespace platform {

namespace {

std::mutex mutex;
std::vector<std::string>* overridden = nullptr;

}  // namespace

bool BackupFoldersOverridden(std::vector<std::string>* folders) {
  const std::lock_guard<std::mutex> lock(mutex);
  if (!overridden) return false;
  *folders = *overridden;
  return true;
}

void UseBackupFoldersForTesting(const std::vector<std::string>& folders) {
  const std::lock_guard<std::mutex> lock(mutex);
  delete overridden;
  overridden = folders.empty() ? nullptr : new std::vector<std::string>(folders);
}

}  // namespace platform
