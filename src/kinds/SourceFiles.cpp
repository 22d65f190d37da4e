#include "kinds/SourceFiles.h"

#include "common/TextHelpers.h"
#include "kinds/ReadableFile.h"

std::string ManifestDbStoredPath(const std::string& backupFolder, const std::string& fileID) {
  return backupFolder + fileID.substr(0, 2) + GetPathSeperatorLine() + fileID;
}

std::vector<std::string> SourceFiles(const BackupDevice* device, const KeySource& source) {
  std::vector<std::string> paths;
  if (device->backupType == 1 && source.manifestDb) {
    auto* reader = static_cast<ManifestDb*>(device->indexReader);
    VqCheckAlive(reader);
    const ManifestDb::KeyList keys = *(reader->*source.manifestDb)();
    for (const std::string& key : keys) paths.push_back(ReadablePath(device, ManifestDbStoredPath(device->backupPath, key)));
  } else if (device->backupType == 0 && source.mbdb) {
    auto* reader = static_cast<Mbdb*>(device->indexReader);
    VqCheckAlive(reader);
    const Mbdb::KeyList keys = *(reader->*source.mbdb)();
    for (const std::string& key : keys) {
      VqCheckAlive(reader);
      const std::string folder =
          source.mbdbFolder == MbdbFolder::Device ? std::string(device->backupPath) : reader->GetBackupPath();
      paths.push_back(ReadablePath(device, folder + key));
    }
  }
  return paths;
}
