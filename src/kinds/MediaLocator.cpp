#include "kinds/MediaLocator.h"

MediaLocator::MediaLocator(const BackupDevice* device) : device_(device) {}

std::optional<std::string> MediaLocator::FindExact(const std::string& relativePath) const {
  if (device_->backupType == 1) {
    auto* reader = static_cast<ManifestDb*>(device_->indexReader);
    VqCheckAlive(reader);
    const ManifestDb::PathMap& map = *reader->GetQueryPathKeyMap();
    auto hit = map.find(relativePath);
    if (hit != map.end()) return ManifestDbStoredPath(device_->backupPath, hit->second->fileID);
  } else if (device_->backupType == 0) {
    auto* reader = static_cast<Mbdb*>(device_->indexReader);
    VqCheckAlive(reader);
    const Mbdb::PathMap& map = *reader->GetQueryPathKeyMap();
    auto hit = map.find(relativePath);
    if (hit != map.end()) return reader->GetBackupPath() + hit->second->storedName;
  }
  return std::nullopt;
}
