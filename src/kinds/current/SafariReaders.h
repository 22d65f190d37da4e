#ifndef YH_KINDS_CURRENT_SAFARIREADERS_H
#define YH_KINDS_CURRENT_SAFARIREADERS_H

#include <string>
#include <vector>

#include "common/Database.h"
#include "kinds/current/SafariEntry.h"

namespace current {

// One entry per page of a History.db, with every visit, in stored order.
std::vector<SafariEntry> ReadHistoryDatabase(Database& database);

// The pages a History.db recorded as deleted (history_tombstones with an
// address), in stored order: the end of the deleted visits' span as their
// last visit, no title, no count, no visit.
std::vector<SafariEntry> ReadHistoryTombstones(Database& database);

// The bookmarks of a Bookmarks.db (folders and deleted ones left out), in stored order.
std::vector<SafariEntry> ReadBookmarks(Database& database);

// The pages of an old History.plist, in stored order; each with its last visit.
std::vector<SafariEntry> ReadHistoryList(const std::string& path);

}  // namespace current

#endif
