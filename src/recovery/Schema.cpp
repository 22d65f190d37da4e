#include "recovery/Schema.h"

#include <algorithm>
#include <string>

#include "recovery/TableTree.h"
#include "recovery/UniqueIndex.h"

namespace {

// sqlite_master's columns: type, name, tbl_name, rootpage, sql.
enum MasterColumn { kType, kName, kTableName, kRootPage, kSql, kMasterColumns };

bool IsText(const SqlValue& value, const char* text) {
  return value.kind == SqlValue::Kind::Text && value.bytes == text;
}

const char kAutoIndexPrefix[] = "sqlite_autoindex_";

// Gives the unique key an index record of sqlite_master declares its root
// page: a constraint's automatic index (no statement; its name ends in the
// key's number) or a unique index over plain columns.
void AttachIndex(const SqlValues& record, std::vector<TableShape>* tables) {
  const SqlValue& root = record[kRootPage];
  if (root.kind != SqlValue::Kind::Integer || root.integer <= 0 || root.integer > UINT32_MAX) return;
  const auto table = std::find_if(tables->begin(), tables->end(),
                                  [&](const TableShape& shape) { return shape.name == record[kTableName].bytes; });
  if (table == tables->end()) return;
  const std::string& name = record[kName].bytes;
  const std::string automatic = kAutoIndexPrefix + table->name + "_";
  if (record[kSql].kind == SqlValue::Kind::Null && name.compare(0, automatic.size(), automatic) == 0) {
    const std::string number = name.substr(automatic.size());
    const size_t n = number.empty() || number.size() > 4 || number.find_first_not_of("0123456789") != std::string::npos
                         ? 0
                         : std::stoul(number);
    if (n >= 1 && n <= table->uniqueKeys.size()) table->uniqueKeys[n - 1].rootPage = static_cast<uint32_t>(root.integer);
    return;
  }
  UniqueKey key;
  if (record[kSql].kind == SqlValue::Kind::Text && ParseUniqueIndex(record[kSql].bytes, *table, &key)) {
    key.rootPage = static_cast<uint32_t>(root.integer);
    table->uniqueKeys.push_back(std::move(key));
  }
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
  std::vector<SqlValues> indexes;
  TableCell cell;
  ForEachTableLeaf(image, 1, &seen, [&](const PageImage& page, const BtreePage& header) {
    for (uint32_t offset : CellOffsets(page.bytes, header, usable)) {
      if (!ReadTableCell(image, page.bytes, offset, usable, &cell)) continue;
      if (std::optional<TableShape> table = DeclaredTable(cell.values)) tables.push_back(std::move(*table));
      if (cell.values.size() >= kMasterColumns && IsText(cell.values[kType], "index")) indexes.push_back(cell.values);
    }
  });
  for (const SqlValues& index : indexes) AttachIndex(index, &tables);
  for (TableShape& table : tables) {
    auto& keys = table.uniqueKeys;
    keys.erase(std::remove_if(keys.begin(), keys.end(),
                              [](const UniqueKey& key) { return key.rootPage == 0 || key.columns.empty(); }),
               keys.end());
  }
  return tables;
}
