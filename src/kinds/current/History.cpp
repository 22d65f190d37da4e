#include "kinds/current/History.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "common/PlistHelpers.h"
#include "kinds/current/DeletedDatabases.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/SafariReaders.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char* const kSafariDomains[] = {"HomeDomain", "AppDomain-com.apple.mobilesafari"};
const char kHistoryList[] = "Library/Safari/History.plist";
const char kHistoryDatabase[] = "Library/Safari/History.db";
const char kBookmarkDatabase[] = "Library/Safari/Bookmarks.db";
// A lost page with its visits, live or lost; then the lost visits of the
// pages that are left, not joined to the lost pages again.
const LostRowsOf kLostPages{{"history_items"}, {}, false, "url"};
const LostRowsOf kLostVisits{{"history_visits"}, {"history_items"}, false, ""};

// Every Safari domain's copy of the file, in the order of kSafariDomains.
std::vector<StoredFile> SafariFiles(const BackupDevice* device, const char* path) {
  std::vector<StoredFile> files;
  for (const char* domain : kSafariDomains) {
    if (std::optional<StoredFile> file = StoredFileIn(device, domain, path)) files.push_back(std::move(*file));
  }
  return files;
}

}  // namespace

// Pages of both databases together, newest first; those never visited last.
std::vector<SafariEntry> History::Read(const BackupDevice* device) {
  std::vector<SafariEntry> entries;
  for (const StoredFile& file : SafariFiles(device, kHistoryList)) AppendMoving(entries, ReadHistoryList(file.path));
  std::vector<SafariEntry> pages =
      ReadOwnDatabases(device, SafariFiles(device, kHistoryDatabase), ReadHistoryDatabase);
  AppendMoving(entries, NewestFirst(std::move(pages), &SafariEntry::instant));
  AppendMoving(entries, ReadOwnDatabases(device, SafariFiles(device, kBookmarkDatabase), ReadBookmarks));
  return entries;
}

std::vector<Deleted<SafariEntry>> History::ReadDeleted(const BackupDevice* device) {
  const std::vector<StoredFile> files = SafariFiles(device, kHistoryDatabase);
  std::vector<Deleted<SafariEntry>> pages = ReadDeletedDatabases(device, files, kLostPages, ReadHistoryDatabase);
  for (Deleted<SafariEntry>& page : ReadDeletedDatabases(device, files, kLostVisits, ReadHistoryDatabase)) {
    if (!page.record.visits.empty()) pages.push_back(std::move(page));
  }
  std::set<std::string> found;
  for (const Deleted<SafariEntry>& page : pages) found.insert(page.record.url);
  for (Deleted<SafariEntry>& page : ReadRecentlyDeleted(device, files, ReadHistoryTombstones)) {
    if (found.insert(page.record.url).second) pages.push_back(std::move(page));
  }
  return WithoutLiveCopies(device, NewestFirst(std::move(pages), &SafariEntry::instant));
}

void History::InsertKeys(const SafariEntry& entry, plist_t dict) const {
  InsertPlistDictString(dict, "url", entry.url.c_str());
  InsertPlistDictString(dict, "type", entry.bookmark ? "bookmark" : "history");
  InsertPlistDictString(dict, "title", entry.title.c_str());
  InsertPlistDictString(dict, "lastVisitedDate", entry.date.c_str());
  // A negative count keeps its sign extension in the unsigned node, as in the described answer.
  plist_dict_set_item(dict, "visitCount", plist_new_uint(static_cast<uint64_t>(entry.visitCount)));
  plist_t visits = plist_new_array();
  for (const SafariEntry::Visit& visit : entry.visits) {
    plist_t item = plist_new_dict();
    InsertPlistDictString(item, "date", visit.date.c_str());
    InsertPlistDictString(item, "title", visit.title.c_str());
    plist_array_append_item(visits, item);
  }
  plist_dict_set_item(dict, "visits", visits);
}

}  // namespace current
