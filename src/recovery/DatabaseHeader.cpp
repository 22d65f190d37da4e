#include "recovery/DatabaseHeader.h"

#include "recovery/Varint.h"

bool IsValidPageSize(uint32_t pageSize) {
  return pageSize >= 512 && pageSize <= 65536 && (pageSize & (pageSize - 1)) == 0;
}

DatabaseHeader ReadDatabaseHeader(std::string_view bytes) {
  DatabaseHeader header;
  if (bytes.size() < 100) return header;
  const uint32_t stored = ReadUInt16(bytes, 16);
  header.pageSize = stored == 1 ? 65536 : stored;
  if (!IsValidPageSize(header.pageSize)) header.pageSize = 0;
  header.reservedBytes = static_cast<uint8_t>(bytes[20]);
  if (header.pageSize != 0 && header.pageSize - header.reservedBytes < 480) header.reservedBytes = 0;
  // The count is valid only when written by the same change as the counter.
  if (ReadUInt32(bytes, 24) == ReadUInt32(bytes, 92)) header.pageCount = ReadUInt32(bytes, 28);
  header.freelistTrunk = ReadUInt32(bytes, 32);
  header.freelistPages = ReadUInt32(bytes, 36);
  const uint32_t encoding = ReadUInt32(bytes, 56);
  if (encoding == 2 || encoding == 3) header.encoding = static_cast<TextEncoding>(encoding);
  header.autoVacuum = ReadUInt32(bytes, 52) != 0;
  header.incrementalVacuum = header.autoVacuum && ReadUInt32(bytes, 64) != 0;
  return header;
}
