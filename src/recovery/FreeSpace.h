#ifndef YH_RECOVERY_FREESPACE_H
#define YH_RECOVERY_FREESPACE_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "recovery/BtreePage.h"
#include "recovery/FileImage.h"

// A stretch of a page that holds no live cell.
struct FreeRegion {
  size_t offset = 0;
  size_t size = 0;
};

// The page's freeblock chain. SQLite keeps it in ascending order, so a
// pointer that does not move forward, or a block past the usable size, ends it.
std::vector<FreeRegion> Freeblocks(std::string_view page, const BtreePage& header, uint32_t usableSize);

// The gap between the cell pointer array and the cell content area.
FreeRegion UnallocatedGap(const BtreePage& header, uint32_t usableSize);

// The freelist's pages: its trunks, whose first bytes list the leaves, and
// the leaves, left as they were when freed. The chain ends at a page out of
// range or met twice.
struct Freelist {
  std::vector<uint32_t> trunks;
  std::vector<uint32_t> leaves;
};
Freelist FreelistPages(const FileImage& image);

#endif
