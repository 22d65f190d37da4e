#ifndef YH_RECOVERY_ROWSPLIST_H
#define YH_RECOVERY_ROWSPLIST_H

#include <plist/plist.h>

#include "recovery/RecoveredRow.h"

// The rows as a plist array of dictionaries: table, source, status, file,
// offset, rowid (when known), partial (true, for a record cut short) and
// values keyed by column name. A NULL value
// has no key (a property list has no null); a negative integer is a real
// when exactly one, else its decimal text (libplist 2.2 holds no signed
// integer); a blob is data.
plist_t RowsPlist(const RecoveredRows& recovered);

#endif
