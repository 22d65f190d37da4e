#include "common/SchemaInfo.h"

#include "common/TextHelpers.h"

SchemaInfo::SchemaInfo(Database& database) {
  Database::Statement columns(
      database, "select m.name, p.name from sqlite_master m join pragma_table_info(m.name) p where m.type = 'table'");
  while (columns.Step()) {
    const char* table = columns.Text(0);
    const char* column = columns.Text(1);
    if (table && column) columns_[AsciiLower(table)].insert(AsciiLower(column));
  }
}

bool SchemaInfo::HasTable(const std::string& table) const { return columns_.count(AsciiLower(table)) != 0; }

bool SchemaInfo::HasColumn(const std::string& table, const std::string& column) const {
  const auto found = columns_.find(AsciiLower(table));
  return found != columns_.end() && found->second.count(AsciiLower(column)) != 0;
}

std::string SchemaInfo::ColumnOrNull(const std::string& table, const std::string& column,
                                     const std::string& alias) const {
  if (!HasColumn(table, column)) return "NULL";
  return (alias.empty() ? table : alias) + "." + column;
}

std::string SchemaInfo::SelectList(const std::string& table, std::initializer_list<const char*> columns,
                                   const std::string& alias) const {
  std::string list;
  for (const char* column : columns) {
    list.append(list.empty() ? "" : ", ").append(ColumnOrNull(table, column, alias)).append(" AS ").append(column);
  }
  return list;
}

std::string NullSelectList(std::initializer_list<const char*> columns) {
  std::string list;
  for (const char* column : columns) list.append(list.empty() ? "" : ", ").append("NULL AS ").append(column);
  return list;
}
