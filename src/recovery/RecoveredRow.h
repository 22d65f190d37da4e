#ifndef YH_RECOVERY_RECOVEREDROW_H
#define YH_RECOVERY_RECOVEREDROW_H

#include <cstdint>
#include <optional>
#include <vector>

#include "recovery/PageImage.h"
#include "recovery/SqlValue.h"
#include "recovery/TableShape.h"

// Where a row's bytes were found.
enum class RowSource { Live, Freelist, Freeblock, Unallocated, Wal, Journal };
// What the row is to the database's current state.
enum class RowStatus { Live, Deleted, EarlierVersion };

const char* RowSourceName(RowSource source);
const char* RowStatusName(RowStatus status);
const char* StoredInName(StoredIn file);

struct RecoveredRow {
  size_t table = 0;  // index into the tables it was read with
  std::optional<int64_t> rowid;
  SqlValues values;  // one per column; the rowid alias holds the rowid when known
  RowSource source = RowSource::Live;
  RowStatus status = RowStatus::Live;
  std::optional<int64_t> liveRowid;  // an earlier version's live row, by its rowid
  bool partial = false;  // its record was cut short: the values past the cut are NULL
  StoredIn file = StoredIn::Database;
  uint64_t offset = 0;  // of the cell in its file
};

// Every row read from a database and its logs, with the tables they belong to.
struct RecoveredRows {
  std::vector<TableShape> tables;
  std::vector<RecoveredRow> rows;
};

#endif
