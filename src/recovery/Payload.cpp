#include "recovery/Payload.h"

#include "recovery/FileImage.h"
#include "recovery/Varint.h"

uint32_t LocalPayloadSize(int64_t payloadSize, uint32_t usableSize, CellKind kind) {
  const int64_t most = kind == CellKind::TableLeaf ? usableSize - 35 : (static_cast<int64_t>(usableSize) - 12) * 64 / 255 - 23;
  if (payloadSize <= most) return static_cast<uint32_t>(payloadSize);
  const int64_t least = (static_cast<int64_t>(usableSize) - 12) * 32 / 255 - 23;
  const int64_t local = least + (payloadSize - least) % (usableSize - 4);
  return static_cast<uint32_t>(local <= most ? local : least);
}

bool ReadPayload(const FileImage& image, CellKind kind, std::string_view page, size_t offset, size_t limit,
                 int64_t payloadSize,
                 std::string* storage, std::string_view* payload, size_t* end,
                 const std::unordered_set<uint32_t>* damaged) {
  const uint32_t usable = image.Header().UsableSize();
  // No payload is larger than the file's pages could hold.
  if (payloadSize < 0 || static_cast<uint64_t>(payloadSize) > static_cast<uint64_t>(image.PageCount() + 1) * usable) {
    return false;
  }
  const uint32_t local = LocalPayloadSize(payloadSize, usable, kind);
  const bool overflows = local < payloadSize;
  const size_t localEnd = offset + local + (overflows ? 4 : 0);
  if (localEnd > limit || localEnd > page.size()) return false;
  *end = localEnd;
  if (!overflows) {
    *payload = page.substr(offset, local);
    return true;
  }
  std::string* gathered = storage;
  gathered->assign(page.substr(offset, local));
  uint32_t next = ReadUInt32(page, offset + local);
  std::unordered_set<uint32_t> seen;
  while (gathered->size() < static_cast<uint64_t>(payloadSize)) {
    // A damaged page's first bytes were overwritten: what came before it is all there is.
    if (damaged && damaged->count(next) != 0) break;
    if (next == 0 || !seen.insert(next).second) return false;
    const PageImage overflow = image.Page(next);
    if (overflow.bytes.size() < usable) return false;
    const size_t wanted = static_cast<size_t>(payloadSize) - gathered->size();
    gathered->append(overflow.bytes.substr(4, std::min<size_t>(wanted, usable - 4)));
    next = ReadUInt32(overflow.bytes, 0);
  }
  *payload = *gathered;
  return true;
}
