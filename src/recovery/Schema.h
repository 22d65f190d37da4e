#ifndef YH_RECOVERY_SCHEMA_H
#define YH_RECOVERY_SCHEMA_H

#include <optional>
#include <vector>

#include "recovery/FileImage.h"
#include "recovery/SqlValue.h"
#include "recovery/TableShape.h"

// The tables that sqlite_master (the table b-tree on page 1) declares, in its
// order, read by our own code. Virtual tables, views and tables without a
// root page are left out; WITHOUT ROWID tables are kept, marked. Each keeps
// the unique keys whose index b-tree the schema names.
std::vector<TableShape> ReadSchema(const FileImage& image);

// sqlite_master's own shape, to carve its deleted records with.
TableShape MasterShape();

// The table a sqlite_master record declares, when it declares one: a table
// with a root page and a CREATE TABLE statement our parser reads.
std::optional<TableShape> DeclaredTable(const SqlValues& record);

#endif
