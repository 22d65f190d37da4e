#include "recovery/Schema.h"

#include <unordered_set>

#include "recovery/TableTree.h"

namespace {

// sqlite_master's columns: type, name, tbl_name, rootpage, sql.
enum MasterColumn { kType, kName, kTableName, kRootPage, kSql, kMasterColumns };

bool IsText(const SqlValue& value, const char* text) {
  return value.kind == SqlValue::Kind::Text && value.bytes == text;
}

}  // namespace

std::vector<TableShape> ReadSchema(const FileImage& image) {
  std::vector<TableShape> tables;
  std::unordered_set<uint32_t> seen;
  const uint32_t usable = image.Header().UsableSize();
  ForEachTableLeaf(image, 1, &seen, [&](const PageImage& page, const BtreePage& header) {
    for (uint32_t offset : CellOffsets(page.bytes, header, usable)) {
      const std::optional<TableCell> cell = ReadTableCell(image, page.bytes, offset, usable);
      if (!cell || cell->values.size() < kMasterColumns || !IsText(cell->values[kType], "table")) continue;
      const SqlValue& root = cell->values[kRootPage];
      const SqlValue& sql = cell->values[kSql];
      if (root.kind != SqlValue::Kind::Integer || root.integer <= 0 || root.integer > UINT32_MAX ||
          sql.kind != SqlValue::Kind::Text) {
        continue;
      }
      TableShape table;
      if (!ParseCreateTable(sql.bytes, &table)) continue;
      table.name = cell->values[kName].bytes;
      table.rootPage = static_cast<uint32_t>(root.integer);
      tables.push_back(std::move(table));
    }
  });
  return tables;
}
