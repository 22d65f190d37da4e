#include "recovery/Schema.h"

#include "recovery/TableTree.h"

namespace {

// sqlite_master's columns: type, name, tbl_name, rootpage, sql.
enum MasterColumn { kType, kName, kTableName, kRootPage, kSql, kMasterColumns };

bool IsText(const SqlValue& value, const char* text) {
  return value.kind == SqlValue::Kind::Text && value.bytes == text;
}

}  // namespace

TableShape MasterShape() {
  TableShape master;
  master.name = "sqlite_master";
  master.rootPage = 1;
  master.columns = {{"type", "text"}, {"name", "text"}, {"tbl_name", "text"}, {"rootpage", "int"}, {"sql", "text"}};
  return master;
}

std::optional<TableShape> DeclaredTable(const SqlValues& record) {
  if (record.size() < kMasterColumns || !IsText(record[kType], "table")) return std::nullopt;
  const SqlValue& root = record[kRootPage];
  const SqlValue& sql = record[kSql];
  if (root.kind != SqlValue::Kind::Integer || root.integer <= 0 || root.integer > UINT32_MAX ||
      sql.kind != SqlValue::Kind::Text) {
    return std::nullopt;
  }
  TableShape table;
  if (!ParseCreateTable(sql.bytes, &table)) return std::nullopt;
  table.name = record[kName].bytes;
  table.rootPage = static_cast<uint32_t>(root.integer);
  return table;
}

std::vector<TableShape> ReadSchema(const FileImage& image) {
  std::vector<TableShape> tables;
  PageSet seen(image.PageCount());
  const uint32_t usable = image.Header().UsableSize();
  TableCell cell;
  ForEachTableLeaf(image, 1, &seen, [&](const PageImage& page, const BtreePage& header) {
    for (uint32_t offset : CellOffsets(page.bytes, header, usable)) {
      if (!ReadTableCell(image, page.bytes, offset, usable, &cell)) continue;
      if (std::optional<TableShape> table = DeclaredTable(cell.values)) tables.push_back(std::move(*table));
    }
  });
  return tables;
}
