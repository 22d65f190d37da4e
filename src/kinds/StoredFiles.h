#ifndef YH_KINDS_STOREDFILES_H
#define YH_KINDS_STOREDFILES_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libYH.h"

// One file of a backup's index, whichever the index kind.
struct StoredFile {
  std::string domain;
  std::string relativePath;
  // Where its bytes are read, and what stat() finds there (see ReadableFileAt).
  std::string path;
  uint64_t size = 0;
  bool regular = false;
};

// Every file of the index that `matches`, in index order; none before analysis.
std::vector<StoredFile> FindStoredFiles(
    const BackupDevice* device,
    const std::function<bool(std::string_view domain, std::string_view relativePath)>& matches);

// Every file at exactly this relative path, whatever its domain, in index order.
std::vector<StoredFile> StoredFilesAt(const BackupDevice* device, const std::string& relativePath);

// The file at this relative path in this domain, when the index lists one.
std::optional<StoredFile> StoredFileIn(const BackupDevice* device, const std::string& domain,
                                       const std::string& relativePath);

#endif
