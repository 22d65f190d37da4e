#ifndef YH_RECOVERY_PAGEIMAGE_H
#define YH_RECOVERY_PAGEIMAGE_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// Which file a page's bytes were read from.
enum class StoredIn { Database, Wal, Journal };

// Where one stored version of a page lies: its number, its file and where
// its bytes begin there.
struct PageLocation {
  uint32_t number = 0;
  StoredIn file = StoredIn::Database;
  uint64_t fileOffset = 0;
};

// One stored version of a page, read: its bytes, possibly shorter than a
// page when the file is truncated. They view the caller's memory, or a
// buffer that `holder` keeps alive as long as the image.
struct PageImage : PageLocation {
  std::string_view bytes;
  std::shared_ptr<const std::string> holder;
};

#endif
