#include "recovery/RecoveredRow.h"

// Each enumeration's names in the order of its values.
const char* RowSourceName(RowSource source) {
  static const char* const kNames[] = {"live", "freelist", "freeblock", "unallocated", "wal", "journal"};
  return kNames[static_cast<int>(source)];
}

const char* RowStatusName(RowStatus status) {
  static const char* const kNames[] = {"live", "deleted", "earlier-version"};
  return kNames[static_cast<int>(status)];
}

const char* StoredInName(StoredIn file) {
  static const char* const kNames[] = {"database", "wal", "journal"};
  return kNames[static_cast<int>(file)];
}
