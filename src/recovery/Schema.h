#ifndef YH_RECOVERY_SCHEMA_H
#define YH_RECOVERY_SCHEMA_H

#include <vector>

#include "recovery/FileImage.h"
#include "recovery/TableShape.h"

// The tables that sqlite_master (the table b-tree on page 1) declares, in its
// order, read by our own code. Virtual tables, views and tables without a
// root page are left out; WITHOUT ROWID tables are kept, marked.
std::vector<TableShape> ReadSchema(const FileImage& image);

#endif
