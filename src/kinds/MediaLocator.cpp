#include "kinds/MediaLocator.h"

#include "common/FileHelpers.h"

MediaLocator::MediaLocator(const BackupDevice* device)
    : device_(device),
      reader_(ReaderOf(device)),
      backupPath_(device->backupPath ? device->backupPath : ""),
      backup_(backupPath_) {
  if (reader_) VqCheckAlive(reader_);
}

uint64_t MediaLocator::SizeNow(const ReadableFile& file) const {
  if (backupPath_.empty() || file.path.compare(0, backupPath_.size(), backupPath_) != 0) {
    return VQGetFileSize(file.path.c_str());
  }
  Folder::Entry entry{};
  return backup_.Has(file.path.substr(backupPath_.size()), &entry) ? entry.size : 0;
}

std::vector<std::string> MediaLocator::PathsContaining(const std::string& needle) const {
  std::vector<std::string> paths;
  if (!reader_) return paths;
  reader_->GetPathIndex().ForEachContaining(needle, [&](size_t position) {
    paths.emplace_back(reader_->PathAt(position));
    return true;
  });
  return paths;
}

std::optional<ReadableFile> MediaLocator::FindExact(const std::string& relativePath) const {
  if (!reader_) return std::nullopt;
  const std::optional<size_t> hit = reader_->MappedAt(relativePath);
  if (!hit) return std::nullopt;
  return ReadableFileAt(device_, *reader_, *hit);
}
