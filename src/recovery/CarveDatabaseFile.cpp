#include <memory>
#include <string>

#include "libYH.h"
#include "recovery/FileBytes.h"
#include "recovery/FileImage.h"
#include "recovery/RecoverRows.h"
#include "recovery/RowsPlist.h"

namespace {

std::unique_ptr<ByteSource> Log(const char* named, const std::string& database, const char* suffix) {
  return std::make_unique<FileBytes>(named ? named : database + suffix);
}

}  // namespace

plist_t CarveDatabaseFile(const char* path, const char* walPath, const char* journalPath, int32_t includeLive) {
  if (!path) return nullptr;
  auto database = std::make_unique<FileBytes>(path);
  if (!database->IsOpen()) return nullptr;
  const FileImage image(std::move(database), Log(walPath, path, "-wal"), Log(journalPath, path, "-journal"));
  return RowsPlist(RecoverRows(image, includeLive != 0));
}
