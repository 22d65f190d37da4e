#ifndef YH_RECOVERY_TABLESHAPE_H
#define YH_RECOVERY_TABLESHAPE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// SQLite's column affinity, from the declared type.
enum class Affinity { Integer, Text, Blob, Real, Numeric };
Affinity AffinityOf(std::string_view declaredType);

struct Column {
  std::string name;
  std::string declaredType;
};

// Columns whose values no two live rows share (rows with a NULL among them
// aside): a UNIQUE or PRIMARY KEY constraint, or a unique index over plain
// columns, each kept by an index b-tree.
struct UniqueKey {
  std::vector<size_t> columns;  // none when the statement named a column the table lacks
  uint32_t rootPage = 0;        // of its index b-tree; 0 until the schema names it
};

// A table as its CREATE TABLE statement declares it.
struct TableShape {
  std::string name;
  uint32_t rootPage = 0;
  std::vector<Column> columns;
  int rowidColumn = -1;  // the INTEGER PRIMARY KEY column, stored as NULL, its value the rowid
  bool withoutRowid = false;
  bool dropped = false;  // known from a deleted sqlite_master record only: its pages are free
  // The constraints first, in the order SQLite numbers their automatic
  // indexes (sqlite_autoindex_TABLE_1, _2, ...), then unique indexes.
  std::vector<UniqueKey> uniqueKeys;

  // The index of the column of that name (case aside); -1 when none has it.
  int ColumnNamed(std::string_view name) const;
};

// Columns, declared types, the rowid alias, unique constraints and WITHOUT
// ROWID from a CREATE TABLE statement; false when it is not one or declares
// no column.
bool ParseCreateTable(std::string_view sql, TableShape* table);

#endif
