#ifndef YH_RECOVERY_UNIQUEINDEX_H
#define YH_RECOVERY_UNIQUEINDEX_H

#include <string_view>

#include "recovery/TableShape.h"

// The key a "CREATE UNIQUE INDEX ... ON table (column, ...)" statement
// declares over `table`'s columns (root page left 0); false for any other
// statement, an index over expressions, or a partial one (WHERE), whose
// values SQLite does not keep unique across the whole table.
bool ParseUniqueIndex(std::string_view sql, const TableShape& table, UniqueKey* key);

#endif
