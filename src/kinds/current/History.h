#ifndef YH_KINDS_CURRENT_HISTORY_H
#define YH_KINDS_CURRENT_HISTORY_H

#include <vector>

#include "kinds/current/SafariEntry.h"
#include "kinds/current/StoredRecordKind.h"
#include "libYH.h"

namespace current {

// Safari history and bookmarks from wherever Safari has kept them (the home
// domain and, on newer devices, Safari's own domain), on both index kinds,
// with their true dates: the old History.plist, then one entry per page of
// each History.db (its last visit, its visit count), then the bookmarks.
// Besides the described keys: "visits", every visit of the page (newest
// first) with its "date" and "title"; a bookmark has none. An empty array
// when the backup holds no history.
class History : public StoredRecordKind<SafariEntry> {
 public:
  History() : StoredRecordKind(WhenNone::EmptyList) {}

 private:
  std::vector<SafariEntry> Read(const BackupDevice* device) override;
  void InsertKeys(const SafariEntry& entry, plist_t dict) const override;
};

}  // namespace current

#endif
