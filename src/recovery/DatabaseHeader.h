#ifndef YH_RECOVERY_DATABASEHEADER_H
#define YH_RECOVERY_DATABASEHEADER_H

#include <cstdint>
#include <string_view>

#include "recovery/TextEncoding.h"

// The first 100 bytes of a database file, as far as reading pages needs them.
struct DatabaseHeader {
  uint32_t pageSize = 0;
  uint32_t reservedBytes = 0;
  uint32_t pageCount = 0;  // 0 when the header's count is stale or absent
  uint32_t freelistTrunk = 0;
  uint32_t freelistPages = 0;
  TextEncoding encoding = TextEncoding::Utf8;
  bool autoVacuum = false;
  bool incrementalVacuum = false;

  uint32_t UsableSize() const { return pageSize - reservedBytes; }
};

// True for a page size SQLite can write: a power of two from 512 to 65536.
bool IsValidPageSize(uint32_t pageSize);

// The header's fields. A damaged header still gives what it can: pageSize is
// 0 when the stored one is not valid, the encoding UTF-8 when unknown, and
// reserved bytes that would leave fewer than 480 usable bytes count as none.
DatabaseHeader ReadDatabaseHeader(std::string_view bytes);

#endif
