#include "kinds/MediaLocator.h"

#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "kinds/ReadableFile.h"
#include "kinds/SourceFiles.h"

MediaLocator::MediaLocator(const BackupDevice* device) : device_(device) {}

std::optional<std::string> MediaLocator::FindExact(const std::string& relativePath) const {
  if (device_->backupType == 1) {
    auto* reader = static_cast<ManifestDb*>(device_->indexReader);
    VqCheckAlive(reader);
    if (const auto* hit = reader->GetQueryPathKeyMap()->Find(relativePath)) {
      return ReadablePath(device_, ManifestDbStoredPath(device_->backupPath, hit->fileID()));
    }
  } else if (device_->backupType == 0) {
    auto* reader = static_cast<Mbdb*>(device_->indexReader);
    VqCheckAlive(reader);
    if (const auto* hit = reader->GetQueryPathKeyMap()->Find(relativePath)) {
      return ReadablePath(device_, reader->GetBackupPath() + hit->storedName());
    }
  }
  return std::nullopt;
}

const MediaLocator::Catalog& MediaLocator::Records() const {
  if (records_) return *records_;
  std::string folder;
  std::function<std::string(size_t)> storedName;
  const PathIndex* paths = nullptr;
  if (device_->backupType == 1) {
    auto* reader = static_cast<ManifestDb*>(device_->indexReader);
    VqCheckAlive(reader);
    folder = device_->backupPath;
    for (const ManifestDb::DBFileRecord* file : *reader->GetContentList()) VqCheckAlive(file);
    storedName = [reader](size_t position) { return (*reader->GetContentList())[position]->fileID(); };
    paths = &reader->GetPathIndex();
  } else if (device_->backupType == 0) {
    auto* reader = static_cast<Mbdb*>(device_->indexReader);
    VqCheckAlive(reader);
    folder = reader->GetBackupPath();
    for (const Mbdb::MBFileRecord* file : *reader->GetContentList()) VqCheckAlive(file);
    storedName = [reader](size_t position) { return (*reader->GetContentList())[position]->storedName(); };
    paths = &reader->GetPathIndex();
  }
  records_ = std::make_unique<const Catalog>(
      Catalog{device_->backupType == 1, std::move(folder), std::move(storedName), paths});
  return *records_;
}

std::string MediaLocator::StoredPath(const Catalog& records, size_t position) const {
  const std::string name = records.storedName(position);
  return ReadablePath(device_, records.manifestDb ? ManifestDbStoredPath(records.folder, name) : records.folder + name);
}
