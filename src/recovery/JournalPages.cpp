#include "recovery/JournalPages.h"

#include <string>
#include <string_view>

#include "recovery/DatabaseHeader.h"
#include "recovery/Varint.h"

namespace {

const std::string_view kMagic("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8);
const size_t kHeaderSize = 28;
const uint32_t kSmallestSector = 512;
const uint32_t kLargestSector = 65536;

bool IsSectorSize(uint32_t size) { return size >= 32 && size <= kLargestSector && (size & (size - 1)) == 0; }

// The page number of a record, or of the 4 bytes at `offset`; 0 past the end.
uint32_t NumberAt(const ByteSource& journal, uint64_t offset) {
  std::string buffer;
  const std::string_view bytes = journal.Read(offset, 4, &buffer);
  return bytes.size() == 4 ? ReadUInt32(bytes, 0) : 0;
}

bool MagicAt(const ByteSource& journal, uint64_t offset) {
  std::string buffer;
  return journal.Read(offset, kMagic.size(), &buffer) == kMagic;
}

// The sector size of a journal whose header is gone.
uint32_t GuessSector(const ByteSource& journal, uint32_t pageCount) {
  for (uint32_t sector = kSmallestSector; sector <= kLargestSector; sector *= 2) {
    if (sector + 4 > journal.Size()) break;
    const uint32_t page = NumberAt(journal, sector);
    if (page >= 1 && page <= pageCount) return sector;
  }
  return kSmallestSector;
}

}  // namespace

JournalPages ReadJournalPages(const ByteSource& journal, uint32_t databasePageSize, uint32_t pageCount) {
  JournalPages found;
  std::string buffer;
  const std::string_view header = journal.Read(0, kHeaderSize, &buffer);
  if (header.size() < kHeaderSize) return found;
  uint32_t pageSize = databasePageSize;
  uint32_t sector = 0;
  if (header.substr(0, kMagic.size()) == kMagic) {
    if (IsSectorSize(ReadUInt32(header, 20))) sector = ReadUInt32(header, 20);
    if (IsValidPageSize(ReadUInt32(header, 24))) pageSize = ReadUInt32(header, 24);
  }
  if (sector == 0) sector = GuessSector(journal, pageCount);
  if (!IsValidPageSize(pageSize)) return found;
  found.pageSize = pageSize;
  const uint64_t recordSize = 4 + static_cast<uint64_t>(pageSize) + 4;
  // Segments follow each other, each after a header of one sector.
  uint64_t offset = sector;
  while (offset + recordSize <= journal.Size()) {
    const uint32_t page = NumberAt(journal, offset);
    if (page == 0) {
      const uint64_t next = (offset / sector + 1) * sector;
      if (!MagicAt(journal, next)) break;
      offset = next + sector;
      continue;
    }
    found.pages.push_back({page, StoredIn::Journal, offset + 4});
    offset += recordSize;
  }
  return found;
}
