#ifndef YH_RECOVERY_RECOVERROWS_H
#define YH_RECOVERY_RECOVERROWS_H

#include <cstddef>
#include <functional>

#include "recovery/FileImage.h"
#include "recovery/RecoveredRow.h"

// How many of a live row's values, first to last, a caller keeps for a
// table: all of them (SIZE_MAX), or fewer when it needs only some leading
// columns of a large table's live rows, such as a key.
using LiveValues = std::function<size_t(const TableShape& table)>;

// Every row the files hold for the tables of the schema: rows carved from
// the current state's freeblocks, unallocated gaps and freelist pages, and
// those of every earlier page image (-wal frames, replaced main-file pages,
// journal pages); with `withLive`, first the live rows of the current state.
// A row that is not live is reported once: deleted when no live row has its
// rowid, an earlier version when a live row has its rowid but other values,
// and not at all when a live row has its rowid and values (or, rowid
// unknown, its values). WITHOUT ROWID tables are listed but not read. Live
// rows are read twice, page by page, and kept only when asked for: what is
// held is the rows returned. With `liveValues`, each live row returned
// holds only that many of its first values.
RecoveredRows RecoverRows(const FileImage& image, bool withLive, const LiveValues& liveValues = nullptr);

#endif
