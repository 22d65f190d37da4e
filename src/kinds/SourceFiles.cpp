#include "kinds/SourceFiles.h"

#include "index/BackupType.h"
#include "kinds/StoredFiles.h"

std::vector<std::string> SourceFiles(const BackupDevice* device, const SourcePaths& source) {
  std::vector<std::string> paths;
  const std::optional<BackupType> type = BackupTypeOf(device);
  const char* path = !type ? nullptr : *type == BackupType::ManifestDb ? source.manifestDb : source.mbdb;
  if (!path) return paths;
  for (StoredFile& file : StoredFilesAt(device, path)) paths.push_back(std::move(file.path));
  return paths;
}
