#include "recovery/TableTree.h"

#include <algorithm>

#include "recovery/Payload.h"
#include "recovery/Record.h"
#include "recovery/Varint.h"

namespace {

// SQLite refuses deeper trees; a deeper walk is a damaged page's loop.
const int kMaxDepth = 40;

void Walk(const FileImage& image, uint32_t number, int depth, std::unordered_set<uint32_t>* seen,
          const std::function<void(const PageImage&, const BtreePage&)>& visit) {
  if (depth > kMaxDepth || !seen->insert(number).second) return;
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

std::optional<TableCell> ReadTableCell(const FileImage& image, std::string_view page, size_t offset, size_t limit) {
  limit = std::min(limit, page.size());
  if (offset >= limit) return std::nullopt;
  const std::string_view region = page.substr(0, limit);
  int64_t payloadSize = 0;
  TableCell cell;
  const int sizeLength = ReadVarint(region, offset, &payloadSize);
  if (sizeLength == 0) return std::nullopt;
  const int rowidLength = ReadVarint(region, offset + sizeLength, &cell.rowid);
  if (rowidLength == 0) return std::nullopt;
  std::string storage;
  std::string_view payload;
  if (!ReadPayload(image, region, offset + sizeLength + rowidLength, limit, payloadSize, &storage, &payload,
                   &cell.end)) {
    return std::nullopt;
  }
  if (!DecodeRecord(payload, image.Header().encoding, &cell.values, &cell.types)) return std::nullopt;
  return cell;
}

void ForEachTableLeaf(const FileImage& image, uint32_t root, std::unordered_set<uint32_t>* seen,
                      const std::function<void(const PageImage&, const BtreePage&)>& visit) {
  Walk(image, root, 0, seen, visit);
}
