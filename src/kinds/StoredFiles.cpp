#include "kinds/StoredFiles.h"

#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "kinds/ReadableFile.h"
#include "kinds/SourceFiles.h"

namespace {

// A record's file as the kinds see it.
StoredFile StoredFileOf(const BackupDevice* device, std::string_view domain, std::string_view relativePath,
                        const std::string& storedPath, const Folder::Entry& stored) {
  ReadableFile readable = ReadableFileOf(device, storedPath, stored);
  return {std::string(domain), std::string(relativePath), std::move(readable.path), readable.size, readable.regular};
}

// The two readers seen alike: their records' domain and relative path, and
// where each record's bytes lie.
struct ManifestDbFiles {
  const BackupDevice* device;
  ManifestDb* reader;
  static std::string_view PathOf(const ManifestDb::DBFileRecord& record) { return record.relativePath(); }
  StoredFile FileOf(const ManifestDb::DBFileRecord& record) const {
    return StoredFileOf(device, record.domain(), record.relativePath(),
                        ManifestDbStoredPath(device->backupPath, record.fileID()), record.stored());
  }
};

struct MbdbFiles {
  const BackupDevice* device;
  Mbdb* reader;
  static std::string_view PathOf(const Mbdb::MBFileRecord& record) { return record.path(); }
  StoredFile FileOf(const Mbdb::MBFileRecord& record) const {
    return StoredFileOf(device, record.domain(), record.path(), reader->GetBackupPath() + record.storedName(),
                        record.stored());
  }
};

template <class Files, class Matches>
std::vector<StoredFile> Find(const Files& files, const Matches& matches) {
  std::vector<StoredFile> found;
  for (const auto* record : *files.reader->GetContentList()) {
    if (matches(record->domain(), Files::PathOf(*record))) found.push_back(files.FileOf(*record));
  }
  return found;
}

// The path map holds one record per relative path; only when that one lies
// in another domain are the records scanned for the one asked for.
template <class Files>
std::optional<StoredFile> FindIn(const Files& files, const std::string& domain, const std::string& relativePath) {
  const auto* hit = files.reader->GetQueryPathKeyMap()->Find(relativePath);
  if (!hit) return std::nullopt;
  if (hit->domain() == domain) return files.FileOf(*hit);
  std::vector<StoredFile> found = Find(files, [&](std::string_view fileDomain, std::string_view path) {
    return fileDomain == domain && path == relativePath;
  });
  if (found.empty()) return std::nullopt;
  return found.front();
}

// Every record of the path, found in the path map unless more than one
// record has it: a scan of a quarter of a million records for each
// database a kind opens is what the map is there to spare.
template <class Files>
std::vector<StoredFile> FindAt(const Files& files, const std::string& relativePath) {
  const auto& map = *files.reader->GetQueryPathKeyMap();
  const auto* hit = map.Find(relativePath);
  if (!hit) return {};
  if (!map.Repeated(relativePath)) return {files.FileOf(*hit)};
  return Find(files, [&](std::string_view, std::string_view path) { return path == relativePath; });
}

// Calls `use` with the record's readers seen alike; returns `none` before analysis.
template <class Result, class Use>
Result WithFiles(const BackupDevice* device, Result none, const Use& use) {
  if (!device->indexReader) return none;
  if (device->backupType == 1) return use(ManifestDbFiles{device, static_cast<ManifestDb*>(device->indexReader)});
  if (device->backupType == 0) return use(MbdbFiles{device, static_cast<Mbdb*>(device->indexReader)});
  return none;
}

}  // namespace

std::vector<StoredFile> FindStoredFiles(
    const BackupDevice* device,
    const std::function<bool(std::string_view domain, std::string_view relativePath)>& matches) {
  return WithFiles(device, std::vector<StoredFile>(), [&](const auto& files) { return Find(files, matches); });
}

std::vector<StoredFile> StoredFilesAt(const BackupDevice* device, const std::string& relativePath) {
  return WithFiles(device, std::vector<StoredFile>(), [&](const auto& files) { return FindAt(files, relativePath); });
}

std::optional<StoredFile> StoredFileIn(const BackupDevice* device, const std::string& domain,
                                       const std::string& relativePath) {
  return WithFiles(device, std::optional<StoredFile>(),
                   [&](const auto& files) { return FindIn(files, domain, relativePath); });
}
