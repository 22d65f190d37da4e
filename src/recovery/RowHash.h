#ifndef YH_RECOVERY_ROWHASH_H
#define YH_RECOVERY_ROWHASH_H

#include <cstddef>
#include <cstdint>

#include "recovery/SqlValue.h"

// Hashes of rows' values under a seed (a table, a key), to find equal rows
// without comparing every pair; equal values give equal hashes, and a
// match is then confirmed by comparing the values.
uint64_t HashOfValues(uint64_t seed, const SqlValue* values, size_t count);
uint64_t HashOfValues(uint64_t seed, const SqlValues& values);

// The hash of a table's values but for the rowid alias column `alias` (none
// when negative), which a row of unknown rowid lacks.
uint64_t HashButRowid(size_t table, const SqlValues& values, int alias);

// Whether the values are equal but for the rowid alias column.
bool SameButRowid(const SqlValues& a, const SqlValues& b, int alias);

#endif
