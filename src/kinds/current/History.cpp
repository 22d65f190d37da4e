#include "kinds/current/History.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "common/PlistHelpers.h"
#include "kinds/LocalDatabase.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/SafariReaders.h"

namespace current {
namespace {

const char* const kSafariDomains[] = {"HomeDomain", "AppDomain-com.apple.mobilesafari"};
const char kHistoryList[] = "Library/Safari/History.plist";
const char kHistoryDatabase[] = "Library/Safari/History.db";
const char kBookmarkDatabase[] = "Library/Safari/Bookmarks.db";

void Append(std::vector<SafariEntry>& to, std::vector<SafariEntry> from) {
  for (SafariEntry& entry : from) to.push_back(std::move(entry));
}

// Every Safari domain's copy of the file, in the order of kSafariDomains.
std::vector<StoredFile> SafariFiles(const BackupDevice* device, const char* path) {
  std::vector<StoredFile> files;
  for (const char* domain : kSafariDomains) {
    if (std::optional<StoredFile> file = StoredFileIn(device, domain, path)) files.push_back(std::move(*file));
  }
  return files;
}

std::vector<SafariEntry> ReadDatabases(const BackupDevice* device, const char* path,
                                       const std::function<std::vector<SafariEntry>(Database&)>& reader) {
  std::vector<SafariEntry> entries;
  for (const StoredFile& file : SafariFiles(device, path)) {
    Database database = OpenStoredDatabase(device, file);
    Append(entries, reader(database));
  }
  return entries;
}

plist_t EntryDict(const SafariEntry& entry) {
  plist_t dict = plist_new_dict();
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
  return dict;
}

}  // namespace

void History::Read(const BackupDevice* device) {
  read_ = true;
  for (const StoredFile& file : SafariFiles(device, kHistoryList)) Append(entries_, ReadHistoryList(file.path));
  std::vector<SafariEntry> pages = ReadDatabases(device, kHistoryDatabase, ReadHistoryDatabase);
  // Pages of both databases together, newest first; those never visited last.
  std::stable_sort(pages.begin(), pages.end(),
                   [](const SafariEntry& a, const SafariEntry& b) { return Newer(a.instant, b.instant); });
  Append(entries_, std::move(pages));
  Append(entries_, ReadDatabases(device, kBookmarkDatabase, ReadBookmarks));
}

plist_t History::FindContent(void* device, int /*flag*/) {
  if (!read_) Read(static_cast<const BackupDevice*>(device));
  plist_t array = plist_new_array();
  for (const SafariEntry& entry : entries_) plist_array_append_item(array, EntryDict(entry));
  return array;
}

}  // namespace current
