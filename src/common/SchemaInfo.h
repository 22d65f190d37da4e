#ifndef YH_COMMON_SCHEMAINFO_H
#define YH_COMMON_SCHEMAINFO_H

#include <initializer_list>
#include <map>
#include <set>
#include <string>

#include "common/Database.h"

// The tables and columns a database has. Device databases change their
// schema from one generation to the next; readers ask here what is there and
// read that, instead of failing a whole query on one missing column.
class SchemaInfo {
 public:
  explicit SchemaInfo(Database& database);

  bool HasTable(const std::string& table) const;
  bool HasColumn(const std::string& table, const std::string& column) const;
  // `table.column` (or `alias.column`) when the column exists, else "NULL":
  // a select list that keeps its column positions whatever the generation.
  std::string ColumnOrNull(const std::string& table, const std::string& column,
                           const std::string& alias = std::string()) const;
  // ColumnOrNull of each column named as the column ("... AS column"), so
  // that rows are read by name, separated by commas.
  std::string SelectList(const std::string& table, std::initializer_list<const char*> columns,
                         const std::string& alias = std::string()) const;

 private:
  // Lower-case names: SQLite compares names without regard to case.
  std::map<std::string, std::set<std::string>> columns_;
};

// "NULL AS column" for each column, separated by commas: the select list of
// a table a query could not join.
std::string NullSelectList(std::initializer_list<const char*> columns);

#endif
