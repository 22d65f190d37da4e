#ifndef YH_KINDS_MEDIALOCATOR_H
#define YH_KINDS_MEDIALOCATOR_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "index/PathIndex.h"
#include "kinds/ReadableFile.h"
#include "libYH.h"

// Finds the stored files of device files named by media records (photos,
// recordings, attachments). On a Manifest.db backup a stored file lies at
// folder + two characters + "/" + fileID; on a Manifest.mbdb backup at the
// reader's folder + stored name.
class MediaLocator {
 public:
  explicit MediaLocator(const BackupDevice* device);

  // The stored file whose device path equals `relativePath` exactly (the
  // index's path map, where a later file of the same path wins).
  std::optional<ReadableFile> FindExact(const std::string& relativePath) const;

  // Visits, in index order, the stored file (a ReadableFile) of every index
  // record whose device path contains `needle`; stops when `visit` returns false.
  template <class Visitor>
  void ForEachContaining(const std::string& needle, Visitor visit) const;

  // The size stat() finds for the file now, as VQGetFileSize gives it. A
  // file below the backup folder is looked up from the folder held open:
  // thousands of pictures would otherwise walk the folder's path again each.
  uint64_t SizeNow(const ReadableFile& file) const;

 private:
  // The index records in index order, with the reader's index of their
  // device paths. Made on the first search: a media kind asks for
  // thousands, and testing every record for each would be quadratic.
  struct Catalog {
    std::function<ReadableFile(size_t)> file;  // by position
    const PathIndex* paths;  // the reader's; NULL without a reader
  };

  const Catalog& Records() const;

  const BackupDevice* device_;
  const std::string backupPath_;
  const Folder backup_;
  mutable std::unique_ptr<const Catalog> records_;
};

#include "kinds/MediaLocator-inl.h"

#endif
