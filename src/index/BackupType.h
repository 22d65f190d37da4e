#ifndef YH_INDEX_BACKUPTYPE_H
#define YH_INDEX_BACKUPTYPE_H

#include <cstdint>
#include <optional>

#include "libYH.h"

// The two kinds of backup index, valued as the public record's backupType
// holds them: that field is the only place where these numbers meet.
enum class BackupType : int32_t { Mbdb = 0, ManifestDb = 1 };

// The record's index kind; none for a value no reader knows.
inline std::optional<BackupType> BackupTypeOf(const BackupDevice* device) {
  switch (device->backupType) {
    case static_cast<int32_t>(BackupType::Mbdb):
      return BackupType::Mbdb;
    case static_cast<int32_t>(BackupType::ManifestDb):
      return BackupType::ManifestDb;
    default:
      return std::nullopt;
  }
}

#endif
