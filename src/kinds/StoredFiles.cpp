#include "kinds/StoredFiles.h"

#include "index/IndexReader.h"
#include "session/BackupSession.h"
#include "kinds/ReadableFile.h"

namespace {

// A record's file as the kinds see it.
StoredFile FileAt(const BackupDevice* device, IndexReader& reader, size_t position) {
  ReadableFile readable = ReadableFileAt(device, reader, position);
  return {std::string(reader.DomainAt(position)), std::string(reader.PathAt(position)), std::move(readable.path),
          readable.size, readable.regular};
}

template <class Matches>
std::vector<StoredFile> Find(const BackupDevice* device, IndexReader& reader, const Matches& matches) {
  std::vector<StoredFile> found;
  for (size_t position = 0; position < reader.RecordCount(); ++position) {
    if (matches(reader.DomainAt(position), reader.PathAt(position))) found.push_back(FileAt(device, reader, position));
  }
  return found;
}

}  // namespace

std::vector<StoredFile> FindStoredFiles(
    const BackupDevice* device,
    const std::function<bool(std::string_view domain, std::string_view relativePath)>& matches) {
  IndexReader* reader = ReaderOf(device);
  if (!reader) return {};
  return Find(device, *reader, matches);
}

// Every record of the path, found in the path map unless more than one
// record has it: a scan of a quarter of a million records for each
// database a kind opens is what the map is there to spare.
std::vector<StoredFile> StoredFilesAt(const BackupDevice* device, const std::string& relativePath) {
  IndexReader* reader = ReaderOf(device);
  if (!reader) return {};
  const std::optional<size_t> hit = reader->MappedAt(relativePath);
  if (!hit) return {};
  if (!reader->Repeated(relativePath)) return {FileAt(device, *reader, *hit)};
  return Find(device, *reader, [&](std::string_view, std::string_view path) { return path == relativePath; });
}

// The path map holds one record per relative path; only when that one lies
// in another domain and others have the path too are the records scanned for
// the one asked for (a kind looks for its database in each of its app's
// domains, and most hold none).
std::optional<StoredFile> StoredFileIn(const BackupDevice* device, const std::string& domain,
                                       const std::string& relativePath) {
  IndexReader* reader = ReaderOf(device);
  if (!reader) return std::nullopt;
  const std::optional<size_t> hit = reader->MappedAt(relativePath);
  if (!hit) return std::nullopt;
  if (reader->DomainAt(*hit) == domain) return FileAt(device, *reader, *hit);
  if (!reader->Repeated(relativePath)) return std::nullopt;
  std::vector<StoredFile> found = Find(device, *reader, [&](std::string_view fileDomain, std::string_view path) {
    return fileDomain == domain && path == relativePath;
  });
  if (found.empty()) return std::nullopt;
  return found.front();
}
