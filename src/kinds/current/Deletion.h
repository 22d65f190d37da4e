#ifndef YH_KINDS_CURRENT_DELETION_H
#define YH_KINDS_CURRENT_DELETION_H

#include <plist/plist.h>

#include <string>

namespace current {

// Where a deleted record was found and when the system deleted it.
struct Deletion {
  // "recently-deleted" for what the system keeps after a deletion, else the
  // part of the stored files that held its bytes: "wal", "freelist",
  // "freeblock", "unallocated" or "journal".
  const char* from = "";
  std::string date;  // local time, "" when the system did not record it
  bool earlierVersion = false;  // an older content of a live record
};

inline constexpr char kRecentlyDeleted[] = "recently-deleted";

// A kind's record as it was before it was deleted.
template <class Record>
struct Deleted {
  Record record;
  Deletion deletion;
};

// "deleted_from" and "deleted_date", then "earlier_version" true for an
// earlier version, after the record's own keys.
void InsertDeletion(const Deletion& deletion, plist_t dict);

}  // namespace current

#endif
