#include "kinds/MediaLocator.h"

#include "common/FileHelpers.h"
#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "kinds/ReadableFile.h"
#include "kinds/SourceFiles.h"

MediaLocator::MediaLocator(const BackupDevice* device)
    : device_(device), backupPath_(device->backupPath ? device->backupPath : ""), backup_(backupPath_) {}

uint64_t MediaLocator::SizeNow(const ReadableFile& file) const {
  if (backupPath_.empty() || file.path.compare(0, backupPath_.size(), backupPath_) != 0) {
    return VQGetFileSize(file.path.c_str());
  }
  Folder::Entry entry{};
  return backup_.Has(file.path.substr(backupPath_.size()), &entry) ? entry.size : 0;
}

std::optional<ReadableFile> MediaLocator::FindExact(const std::string& relativePath) const {
  if (device_->backupType == 1) {
    auto* reader = static_cast<ManifestDb*>(device_->indexReader);
    VqCheckAlive(reader);
    if (const auto* hit = reader->GetQueryPathKeyMap()->Find(relativePath)) {
      return ReadableFileOf(device_, ManifestDbStoredPath(device_->backupPath, hit->fileID()), hit->stored());
    }
  } else if (device_->backupType == 0) {
    auto* reader = static_cast<Mbdb*>(device_->indexReader);
    VqCheckAlive(reader);
    if (const auto* hit = reader->GetQueryPathKeyMap()->Find(relativePath)) {
      return ReadableFileOf(device_, reader->GetBackupPath() + hit->storedName(), hit->stored());
    }
  }
  return std::nullopt;
}

const MediaLocator::Catalog& MediaLocator::Records() const {
  if (records_) return *records_;
  std::function<ReadableFile(size_t)> file;
  const PathIndex* paths = nullptr;
  const BackupDevice* device = device_;
  if (device_->backupType == 1) {
    auto* reader = static_cast<ManifestDb*>(device_->indexReader);
    VqCheckAlive(reader);
    for (const ManifestDb::DBFileRecord* record : *reader->GetContentList()) VqCheckAlive(record);
    file = [device, reader](size_t position) {
      const ManifestDb::DBFileRecord& record = *(*reader->GetContentList())[position];
      return ReadableFileOf(device, ManifestDbStoredPath(device->backupPath, record.fileID()), record.stored());
    };
    paths = &reader->GetPathIndex();
  } else if (device_->backupType == 0) {
    auto* reader = static_cast<Mbdb*>(device_->indexReader);
    VqCheckAlive(reader);
    for (const Mbdb::MBFileRecord* record : *reader->GetContentList()) VqCheckAlive(record);
    file = [device, reader](size_t position) {
      const Mbdb::MBFileRecord& record = *(*reader->GetContentList())[position];
      return ReadableFileOf(device, reader->GetBackupPath() + record.storedName(), record.stored());
    };
    paths = &reader->GetPathIndex();
  }
  records_ = std::make_unique<const Catalog>(Catalog{std::move(file), paths});
  return *records_;
}
