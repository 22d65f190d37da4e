#include <string>

#include "common/FileHelpers.h"
#include "libYH.h"
#include "recovery/FileImage.h"
#include "recovery/RecoverRows.h"
#include "recovery/RowsPlist.h"

namespace {

// A regular file's bytes; "" for anything else, so that a named pipe cannot block.
std::string RegularFileBytes(const std::string& path) {
  if (path.empty()) return "";
  return ReadRegularFile(path).value_or("");
}

std::string LogBytes(const char* named, const std::string& database, const char* suffix) {
  return RegularFileBytes(named ? named : database + suffix);
}

}  // namespace

plist_t CarveDatabaseFile(const char* path, const char* walPath, const char* journalPath, int32_t includeLive) {
  if (!path || !VQIsRegularFile(path)) return nullptr;
  const std::string database = RegularFileBytes(path);
  const std::string wal = LogBytes(walPath, path, "-wal");
  const std::string journal = LogBytes(journalPath, path, "-journal");
  return RowsPlist(RecoverRows(FileImage(database, wal, journal)), includeLive != 0);
}
