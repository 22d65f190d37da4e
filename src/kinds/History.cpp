#include "kinds/History.h"

#include <cstdlib>
#include <cstring>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/PlistDictEntries.h"
#include "common/PlistHelpers.h"
#include "kinds/ColumnDate.h"
#include "kinds/SourceFiles.h"

namespace {

const char kHistoryQuery[] =
    "select hv.title,hi.url,hv.visit_time,hi.visit_count from history_visits hv,history_items hi "
    "where hv.history_item = hi.id";
const char kBookmarkQuery[] = "select title,url,last_modified from bookmarks";

// Older devices keep their history in a property list, newer ones in a
// database. Bookmarks are read from Manifest.mbdb backups only: on Manifest.db
// backups they are deliberately left out, so that source has no accessor there.
const SourcePaths kHistoryPlistSource{"Library/Safari/History.plist", "Library/Safari/History.plist"};
const SourcePaths kHistoryDbSource{"Library/Safari/History.db", nullptr};
const SourcePaths kBookmarkSource{nullptr, "Library/Safari/Bookmarks.db"};

void InsertDate(plist_t dict, const std::string& date) {
  InsertPlistDictString(dict, "lastVisitedDate", date.c_str());
}

// One visit of a page; the page's total visit count goes into each of its visits.
int HistoryDbCallback(void* context, int, char** values, char**) {
  plist_t entry = plist_new_dict();
  InsertPlistDictString(entry, "url", values[1]);
  InsertPlistDictString(entry, "type", "history");
  InsertPlistDictString(entry, "title", values[0]);
  InsertDate(entry, DateText2001OrNow(values[2]));
  // A negative count keeps its sign extension in the unsigned node.
  const int64_t visits = GetZeroIntIsNull(values[3]);
  plist_dict_set_item(entry, "visitCount", plist_new_uint(static_cast<uint64_t>(visits)));
  // A sink that wants no more ends the query.
  return static_cast<RecordSink*>(context)->Put(entry) ? 0 : 1;
}

// Folders have no address and are left out.
int BookmarkDbCallback(void* context, int, char** values, char**) {
  const char* url = values[1];
  if (!url || !*url || std::strcmp(url, "NULL") == 0) return 0;
  plist_t entry = plist_new_dict();
  InsertPlistDictString(entry, "url", url);
  InsertPlistDictString(entry, "type", "bookmark");
  InsertPlistDictString(entry, "title", values[0]);
  InsertDate(entry, DateText2001OrNow(values[2]));
  plist_dict_set_item(entry, "visitCount", plist_new_uint(1));
  return static_cast<RecordSink*>(context)->Put(entry) ? 0 : 1;
}

// One element of "WebHistoryDates": its first entry is the address, whatever
// its key; of the others only the title, date and visit count are kept.
void AppendPlistEntry(plist_t element, RecordSink& sink) {
  if (plist_get_node_type(element) != PLIST_DICT) return;
  PlistDictEntries entries(element);
  std::string key;
  plist_t value = nullptr;
  if (!entries.Next(&key, &value)) return;
  plist_t entry = plist_new_dict();
  plist_dict_set_item(entry, "url", plist_copy(value));
  InsertPlistDictString(entry, "type", "history");
  while (entries.Next(&key, &value)) {
    if (key == "title") {
      plist_dict_set_item(entry, "title", plist_copy(value));
    } else if (key == "lastVisitedDate") {
      // A date of another node type counts as 0 seconds.
      std::string seconds;
      const bool isText = PlistGetString(value, &seconds);
      InsertDate(entry, DateText2001(isText ? seconds.c_str() : nullptr));
    } else if (key == "visitCount") {
      plist_dict_set_item(entry, "visitCount", plist_copy(value));
    }
  }
  sink.Put(entry);
}

}  // namespace

bool History::HandContent(void* device, int, RecordSink& sink) {
  auto* backup = static_cast<BackupDevice*>(device);
  for (const std::string& path : SourceFiles(backup, kHistoryPlistSource)) AddHistoryList(path, sink);
  for (const std::string& path : SourceFiles(backup, kHistoryDbSource)) AddHistoryDb(path, sink);
  for (const std::string& path : SourceFiles(backup, kBookmarkSource)) AddBookmarkList(path, sink);
  return true;
}

void History::AddHistoryList(const std::string& path, RecordSink& sink) {
  OwnedPlist root(ReadPlist(path.c_str()));
  if (!root) return;
  plist_t dates = plist_dict_get_item(root.get(), "WebHistoryDates");
  if (plist_get_node_type(dates) != PLIST_ARRAY) return;
  // With an iterator: plist_array_get_item walks a parsed array from its
  // start every time, which makes a long history quadratic.
  plist_array_iter iter = nullptr;
  plist_array_new_iter(dates, &iter);
  for (plist_t element = nullptr; !sink.Stopped();) {
    plist_array_next_item(dates, iter, &element);
    if (!element) break;
    AppendPlistEntry(element, sink);
  }
  std::free(iter);
}

void History::AddHistoryDb(const std::string& path, RecordSink& sink) {
  if (sink.Stopped()) return;
  Database db(path);
  if (db.IsOpen()) db.Exec(kHistoryQuery, HistoryDbCallback, &sink);
}

void History::AddBookmarkList(const std::string& path, RecordSink& sink) {
  if (sink.Stopped()) return;
  Database db(path);
  if (db.IsOpen()) db.Exec(kBookmarkQuery, BookmarkDbCallback, &sink);
}
