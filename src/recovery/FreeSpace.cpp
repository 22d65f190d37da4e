#include "recovery/FreeSpace.h"

#include <algorithm>

#include "recovery/PageSet.h"
#include "recovery/Varint.h"

std::vector<FreeRegion> Freeblocks(std::string_view page, const BtreePage& header, uint32_t usableSize) {
  std::vector<FreeRegion> blocks;
  size_t offset = header.firstFreeblock;
  size_t lowest = header.CellPointersEnd();
  while (offset != 0 && offset >= lowest && offset + 4 <= usableSize) {
    const size_t size = ReadUInt16(page, offset + 2);
    if (size < 4 || offset + size > usableSize) break;
    blocks.push_back({offset, size});
    lowest = offset + size;
    offset = ReadUInt16(page, offset);
  }
  return blocks;
}

FreeRegion UnallocatedGap(const BtreePage& header, uint32_t usableSize) {
  const size_t start = header.CellPointersEnd();
  const size_t end = std::min<size_t>(header.contentStart, usableSize);
  return {start, end > start ? end - start : 0};
}

Freelist FreelistPages(const FileImage& image) {
  Freelist pages;
  PageSet seen(image.PageCount());
  const uint32_t usable = image.Header().UsableSize();
  uint32_t trunk = image.Header().freelistTrunk;
  while (trunk != 0 && trunk <= image.PageCount() && seen.Insert(trunk)) {
    const PageImage page = image.Page(trunk);
    if (page.bytes.size() < 8) break;
    pages.trunks.push_back(trunk);
    const size_t room = std::min<size_t>(usable, page.bytes.size());
    const uint32_t leaves = std::min<uint32_t>(ReadUInt32(page.bytes, 4), static_cast<uint32_t>((room - 8) / 4));
    for (uint32_t i = 0; i < leaves; ++i) {
      const uint32_t leaf = ReadUInt32(page.bytes, 8 + 4 * i);
      if (leaf != 0 && leaf <= image.PageCount() && seen.Insert(leaf)) pages.leaves.push_back(leaf);
    }
    trunk = ReadUInt32(page.bytes, 0);
  }
  return pages;
}
