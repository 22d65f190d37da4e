#ifndef YH_KINDS_MEDIALOCATOR_INL_H
#define YH_KINDS_MEDIALOCATOR_INL_H

#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "kinds/SourceFiles.h"

template <class Visitor>
void MediaLocator::ForEachContaining(const std::string& needle, Visitor visit) const {
  if (device_->backupType == 1) {
    auto* reader = static_cast<ManifestDb*>(device_->indexReader);
    VqCheckAlive(reader);
    for (const ManifestDb::DBFileRecord* file : *reader->GetContentList()) {
      VqCheckAlive(file);
      if (file->relativePath.find(needle) != std::string::npos &&
          !visit(ManifestDbStoredPath(device_->backupPath, file->fileID))) {
        return;
      }
    }
  } else if (device_->backupType == 0) {
    auto* reader = static_cast<Mbdb*>(device_->indexReader);
    VqCheckAlive(reader);
    const std::string folder = reader->GetBackupPath();
    for (const Mbdb::MBFileRecord* file : *reader->GetContentList()) {
      VqCheckAlive(file);
      if (file->path.find(needle) != std::string::npos && !visit(folder + file->storedName)) return;
    }
  }
}

#endif
