#include "recovery/TableTree.h"

#include <algorithm>

#include "recovery/Payload.h"
#include "recovery/Record.h"
#include "recovery/Varint.h"

namespace {

// SQLite refuses deeper trees; a deeper walk is a damaged page's loop.
const int kMaxDepth = 40;

void Walk(const FileImage& image, uint32_t number, int depth, PageSet* seen,
          const std::function<void(const PageImage&, const BtreePage&)>& visit) {
  if (depth > kMaxDepth || !seen->Insert(number)) return;
  const PageImage page = image.Page(number);
  const uint32_t usable = image.Header().UsableSize();
  const std::optional<BtreePage> header = ReadBtreePage(page.bytes, number, usable);
  if (!header || (header->type != BtreePage::TableLeaf && header->type != BtreePage::TableInterior)) return;
  if (header->IsLeaf()) {
    visit(page, *header);
    return;
  }
  for (uint32_t offset : CellOffsets(page.bytes, *header, usable)) {
    if (offset + 4 <= usable) Walk(image, ReadUInt32(page.bytes, offset), depth + 1, seen, visit);
  }
  Walk(image, header->rightChild, depth + 1, seen, visit);
}

}  // namespace

bool ReadTableCell(const FileImage& image, std::string_view page, size_t offset, size_t limit, TableCell* cell) {
  limit = std::min(limit, page.size());
  if (offset >= limit) return false;
  const std::string_view region = page.substr(0, limit);
  int64_t payloadSize = 0;
  const int sizeLength = ReadVarint(region, offset, &payloadSize);
  if (sizeLength == 0) return false;
  const int rowidLength = ReadVarint(region, offset + sizeLength, &cell->rowid);
  if (rowidLength == 0) return false;
  std::string storage;
  std::string_view payload;
  return ReadPayload(image, CellKind::TableLeaf, region, offset + sizeLength + rowidLength, limit, payloadSize, &storage, &payload,
                     &cell->end) &&
         DecodeRecord(payload, image.Header().encoding, &cell->values, &cell->types);
}

std::optional<int64_t> FirstSerialType(std::string_view page, size_t offset, size_t limit) {
  const std::string_view region = page.substr(0, std::min(limit, page.size()));
  int64_t payloadSize = 0;
  int64_t rowid = 0;
  int64_t headerLength = 0;
  int64_t type = 0;
  const int sizeLength = ReadVarint(region, offset, &payloadSize);
  const int rowidLength = sizeLength == 0 ? 0 : ReadVarint(region, offset + sizeLength, &rowid);
  const size_t header = offset + sizeLength + rowidLength;
  const int headerLengthLength = rowidLength == 0 ? 0 : ReadVarint(region, header, &headerLength);
  if (headerLengthLength == 0 || headerLength <= headerLengthLength) return std::nullopt;
  if (ReadVarint(region, header + headerLengthLength, &type) == 0 || SerialTypeLength(type) < 0) return std::nullopt;
  return type;
}

void ForEachTableLeaf(const FileImage& image, uint32_t root, PageSet* seen,
                      const std::function<void(const PageImage&, const BtreePage&)>& visit) {
  Walk(image, root, 0, seen, visit);
}
