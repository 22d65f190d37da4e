#ifndef YH_KINDS_MEDIALOCATOR_H
#define YH_KINDS_MEDIALOCATOR_H

#include <optional>
#include <string>
#include <vector>

#include "index/IndexReader.h"
#include "kinds/ReadableFile.h"
#include "libYH.h"
#include "platform/Folder.h"
#include "session/BackupSession.h"

// Finds the stored files of device files named by media records (photos,
// recordings, attachments) through the record's index reader.
class MediaLocator {
 public:
  explicit MediaLocator(const BackupDevice* device);

  // The stored file whose device path equals `relativePath` exactly (the
  // index's path map, where a later file of the same path wins).
  std::optional<ReadableFile> FindExact(const std::string& relativePath) const;

  // Visits, in index order, the stored file (a ReadableFile) of every index
  // record whose device path contains `needle`, found through the reader's
  // path index: a media kind asks for thousands, and testing every record
  // for each would be quadratic. Stops when `visit` returns false.
  template <class Visitor>
  void ForEachContaining(const std::string& needle, Visitor visit) const;

  // The device paths of the index records whose device path contains
  // `needle`, in index order.
  std::vector<std::string> PathsContaining(const std::string& needle) const;

  // The size stat() finds for the file now, as VQGetFileSize gives it. A
  // file below the backup folder is looked up from the folder held open:
  // thousands of pictures would otherwise walk the folder's path again each.
  uint64_t SizeNow(const ReadableFile& file) const;

 private:
  const BackupDevice* device_;
  IndexReader* reader_;  // NULL without one
  const std::string backupPath_;
  const Folder backup_;
};

#include "kinds/MediaLocator-inl.h"

#endif
