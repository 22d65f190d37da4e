#ifndef YH_RECOVERY_TABLETREE_H
#define YH_RECOVERY_TABLETREE_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "recovery/BtreePage.h"
#include "recovery/FileImage.h"
#include "recovery/PageSet.h"
#include "recovery/SqlValue.h"

// One cell of a table leaf page, decoded.
struct TableCell {
  int64_t rowid = 0;
  SqlValues values;
  std::vector<int64_t> types;
  size_t end = 0;  // offset after the cell's local part
};

// The cell at page[offset]: payload length, rowid, then a record that decodes
// whole (through its overflow chain in the current image); false otherwise.
// The local part must end at or before `limit`. A cell read before is
// overwritten, its texts' room used again.
bool ReadTableCell(const FileImage& image, std::string_view page, size_t offset, size_t limit, TableCell* cell);

// The first serial type of the record of the cell at page[offset], read from
// the record's header alone; nullopt when the cell holds none before `limit`.
std::optional<int64_t> FirstSerialType(std::string_view page, size_t offset, size_t limit);

// Calls visit for every leaf page of the table b-tree rooted at `root` in the
// current image, left to right. Every page is visited at most once (`seen`
// collects the pages met, interior ones too), so a cycle ends the walk there.
void ForEachTableLeaf(const FileImage& image, uint32_t root, PageSet* seen,
                      const std::function<void(const PageImage&, const BtreePage&)>& visit);

#endif
