#ifndef YH_RECOVERY_BTREEPAGE_H
#define YH_RECOVERY_BTREEPAGE_H

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// The header of a b-tree page (table or index, interior or leaf).
struct BtreePage {
  enum Type : uint8_t { IndexInterior = 2, TableInterior = 5, IndexLeaf = 10, TableLeaf = 13 };
  Type type = TableLeaf;
  size_t headerOffset = 0;  // 100 on page 1, after the database header
  uint32_t firstFreeblock = 0;
  uint32_t cellCount = 0;
  uint32_t contentStart = 0;
  uint32_t rightChild = 0;  // interior pages only

  bool IsLeaf() const { return type == IndexLeaf || type == TableLeaf; }
  size_t HeaderSize() const { return IsLeaf() ? 8 : 12; }
  size_t CellPointersEnd() const { return headerOffset + HeaderSize() + 2 * static_cast<size_t>(cellCount); }
};

// The page's header when its type byte names a b-tree page and its cell
// pointer array fits in the usable size; nullopt otherwise.
std::optional<BtreePage> ReadBtreePage(std::string_view page, uint32_t number, uint32_t usableSize);

// The offsets of the page's cells, in pointer order; pointers into the
// header or past the usable size are left out.
std::vector<uint32_t> CellOffsets(std::string_view page, const BtreePage& header, uint32_t usableSize);

#endif
