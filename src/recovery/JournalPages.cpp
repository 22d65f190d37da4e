#include "recovery/JournalPages.h"

#include "recovery/DatabaseHeader.h"
#include "recovery/Varint.h"

namespace {

const char kMagic[] = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7";
const uint32_t kSmallestSector = 512;
const uint32_t kLargestSector = 65536;

bool IsSectorSize(uint32_t size) { return size >= 32 && size <= kLargestSector && (size & (size - 1)) == 0; }

// The sector size of a journal whose header is gone.
uint32_t GuessSector(std::string_view journal, uint32_t pageCount) {
  for (uint32_t sector = kSmallestSector; sector <= kLargestSector; sector *= 2) {
    if (sector + 4 > journal.size()) break;
    const uint32_t page = ReadUInt32(journal, sector);
    if (page >= 1 && page <= pageCount) return sector;
  }
  return kSmallestSector;
}

}  // namespace

std::vector<PageImage> ReadJournalPages(std::string_view journal, uint32_t databasePageSize, uint32_t pageCount) {
  std::vector<PageImage> pages;
  if (journal.size() < 28) return pages;
  uint32_t pageSize = databasePageSize;
  uint32_t sector = 0;
  if (journal.substr(0, 8) == std::string_view(kMagic, 8)) {
    if (IsSectorSize(ReadUInt32(journal, 20))) sector = ReadUInt32(journal, 20);
    if (IsValidPageSize(ReadUInt32(journal, 24))) pageSize = ReadUInt32(journal, 24);
  }
  if (sector == 0) sector = GuessSector(journal, pageCount);
  if (!IsValidPageSize(pageSize)) return pages;
  const size_t recordSize = 4 + static_cast<size_t>(pageSize) + 4;
  // Segments follow each other, each after a header of one sector.
  size_t offset = sector;
  while (offset + recordSize <= journal.size()) {
    const uint32_t page = ReadUInt32(journal, offset);
    if (page == 0) {
      const size_t next = (offset / sector + 1) * sector;
      if (next + 8 > journal.size() || journal.substr(next, 8) != std::string_view(kMagic, 8)) break;
      offset = next + sector;
      continue;
    }
    pages.push_back({page, journal.substr(offset + 4, pageSize), StoredIn::Journal, offset + 4});
    offset += recordSize;
  }
  return pages;
}
