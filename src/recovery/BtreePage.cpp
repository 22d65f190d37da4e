#include "recovery/BtreePage.h"

#include "recovery/Varint.h"

std::optional<BtreePage> ReadBtreePage(std::string_view page, uint32_t number, uint32_t usableSize) {
  BtreePage header;
  header.headerOffset = number == 1 ? 100 : 0;
  if (page.size() < usableSize || header.headerOffset + 12 > page.size()) return std::nullopt;
  const uint8_t type = static_cast<uint8_t>(page[header.headerOffset]);
  if (type != BtreePage::IndexInterior && type != BtreePage::TableInterior && type != BtreePage::IndexLeaf &&
      type != BtreePage::TableLeaf) {
    return std::nullopt;
  }
  header.type = static_cast<BtreePage::Type>(type);
  header.firstFreeblock = ReadUInt16(page, header.headerOffset + 1);
  header.cellCount = ReadUInt16(page, header.headerOffset + 3);
  header.contentStart = ReadUInt16(page, header.headerOffset + 5);
  if (header.contentStart == 0) header.contentStart = 65536;
  if (!header.IsLeaf()) header.rightChild = ReadUInt32(page, header.headerOffset + 8);
  if (header.CellPointersEnd() > usableSize) return std::nullopt;
  return header;
}

std::vector<uint32_t> CellOffsets(std::string_view page, const BtreePage& header, uint32_t usableSize) {
  std::vector<uint32_t> offsets;
  const size_t start = header.headerOffset + header.HeaderSize();
  for (uint32_t i = 0; i < header.cellCount; ++i) {
    const uint32_t offset = ReadUInt16(page, start + 2 * i);
    if (offset >= header.CellPointersEnd() && offset < usableSize) offsets.push_back(offset);
  }
  return offsets;
}
