#ifndef YH_RECOVERY_PAGEIMAGE_H
#define YH_RECOVERY_PAGEIMAGE_H

#include <cstdint>
#include <string_view>

// Which file a page's bytes were read from.
enum class StoredIn { Database, Wal, Journal };

// One stored version of a page: its number, its bytes (a view into the file
// they came from, possibly shorter than a page when the file is truncated)
// and where those bytes begin in their file.
struct PageImage {
  uint32_t number = 0;
  std::string_view bytes;
  StoredIn file = StoredIn::Database;
  uint64_t fileOffset = 0;
};

#endif
