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

// A table as its CREATE TABLE statement declares it.
struct TableShape {
  std::string name;
  uint32_t rootPage = 0;
  std::vector<Column> columns;
  int rowidColumn = -1;  // the INTEGER PRIMARY KEY column, stored as NULL, its value the rowid
  bool withoutRowid = false;
  bool dropped = false;  // known from a deleted sqlite_master record only: its pages are free
};

// Columns, declared types, the rowid alias and WITHOUT ROWID from a CREATE
// TABLE statement; false when it is not one or declares no column.
bool ParseCreateTable(std::string_view sql, TableShape* table);

#endif
