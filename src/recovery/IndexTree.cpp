#include "recovery/IndexTree.h"

#include <string>
#include <string_view>

#include "recovery/BtreePage.h"
#include "recovery/Payload.h"
#include "recovery/Record.h"
#include "recovery/Varint.h"

namespace {

// SQLite refuses deeper trees; a deeper walk is a damaged page's loop.
const int kMaxDepth = 40;

class IndexWalk {
 public:
  IndexWalk(const FileImage& image, PageSet* seen, const std::function<void(const SqlValues&)>& visit)
      : image_(image), seen_(seen), visit_(visit) {}

  void Walk(uint32_t number, int depth) {
    if (depth > kMaxDepth || !seen_->Insert(number)) return;
    const PageImage page = image_.Page(number);
    const uint32_t usable = image_.Header().UsableSize();
    const std::optional<BtreePage> header = ReadBtreePage(page.bytes, number, usable);
    if (!header || (header->type != BtreePage::IndexLeaf && header->type != BtreePage::IndexInterior)) return;
    // An interior cell is the left child's page number, then an entry.
    const size_t childSize = header->IsLeaf() ? 0 : 4;
    for (uint32_t offset : CellOffsets(page.bytes, *header, usable)) {
      if (offset + childSize > usable) continue;
      if (childSize != 0) Walk(ReadUInt32(page.bytes, offset), depth + 1);
      Entry(page.bytes.substr(0, usable), offset + childSize);
    }
    if (!header->IsLeaf()) Walk(header->rightChild, depth + 1);
  }

 private:
  const FileImage& image_;
  PageSet* seen_;
  const std::function<void(const SqlValues&)>& visit_;
  std::string storage_;
  SqlValues values_;

  void Entry(std::string_view page, size_t offset) {
    int64_t payloadSize = 0;
    const int sizeLength = ReadVarint(page, offset, &payloadSize);
    std::string_view payload;
    size_t end = 0;
    if (sizeLength != 0 &&
        ReadPayload(image_, CellKind::Index, page, offset + sizeLength, page.size(), payloadSize, &storage_, &payload,
                    &end) &&
        DecodeRecord(payload, image_.Header().encoding, &values_)) {
      visit_(values_);
    }
  }
};

}  // namespace

void ForEachIndexEntry(const FileImage& image, uint32_t root, PageSet* seen,
                       const std::function<void(const SqlValues&)>& visit) {
  IndexWalk(image, seen, visit).Walk(root, 0);
}
