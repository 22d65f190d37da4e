#ifndef YH_KINDS_CURRENT_HISTORY_H
#define YH_KINDS_CURRENT_HISTORY_H

#include <vector>

#include "kinds/Kind.h"
#include "kinds/current/SafariEntry.h"
#include "libYH.h"

namespace current {

// Safari history and bookmarks from wherever Safari has kept them (the home
// domain and, on newer devices, Safari's own domain), on both index kinds,
// with their true dates: the old History.plist, then one entry per page of
// each History.db (its last visit, its visit count), then the bookmarks.
// Besides the described keys: "visits", every visit of the page (newest
// first) with its "date" and "title"; a bookmark has none.
class History : public Kind {
 public:
  // An array, empty when the backup holds no history.
  plist_t FindContent(void* device, int flag) override;

 private:
  void Read(const BackupDevice* device);

  bool read_ = false;
  std::vector<SafariEntry> entries_;
};

}  // namespace current

#endif
