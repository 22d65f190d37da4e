#include "kinds/current/SafariReaders.h"

#include <cstdlib>
#include <optional>

#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/PlistDictEntries.h"
#include "common/PlistHelpers.h"
#include "common/SchemaInfo.h"
#include "kinds/current/NewestFirst.h"

namespace current {
namespace {

std::string Text(const Database::Statement& row, int column) { return GetEmptyStringIsNull(row.Text(column)); }

// One element of "WebHistoryDates": its first entry is the address, whatever
// its key; the date is text holding seconds since 2001.
std::optional<SafariEntry> PlistEntry(plist_t element) {
  if (plist_get_node_type(element) != PLIST_DICT) return std::nullopt;
  PlistDictEntries entries(element);
  std::string key;
  plist_t value = nullptr;
  SafariEntry entry;
  if (!entries.Next(&key, &value) || !PlistGetString(value, &entry.url)) return std::nullopt;
  while (entries.Next(&key, &value)) {
    if (key == "title") {
      PlistGetString(value, &entry.title);
    } else if (key == "lastVisitedDate") {
      std::string seconds;
      if (PlistGetString(value, &seconds)) entry.date = LocalDateText(seconds.c_str(), TimeBase::Since2001);
    } else if (key == "visitCount" && plist_get_node_type(value) == PLIST_UINT) {
      uint64_t count = 0;
      plist_get_uint_val(value, &count);
      entry.visitCount = static_cast<int64_t>(count);
    }
  }
  entry.visits.push_back({entry.date, entry.title, std::nullopt});
  return entry;
}

}  // namespace

// Visits newest first, those without a readable date last; a page's date
// is that of its newest readable visit, its title that of its newest visit
// that has one (redirects have none).
std::vector<SafariEntry> ReadHistoryDatabase(Database& database) {
  const SchemaInfo schema(database);
  std::vector<SafariEntry> entries;
  if (!schema.HasTable("history_items")) return entries;
  const bool hasVisits = schema.HasTable("history_visits") && schema.HasColumn("history_visits", "history_item");
  const std::string visits = hasVisits ? schema.SelectList("history_visits", {"visit_time", "title"}, "hv")
                                       : "NULL AS visit_time, NULL AS title";
  std::string query = "select hi.id AS id, " + schema.SelectList("history_items", {"url", "visit_count"}, "hi") + ", " +
                      visits + " from history_items hi";
  if (hasVisits) query += " left join history_visits hv on hv.history_item = hi.id";
  query += hasVisits ? " order by hi.id, hv.visit_time desc, hv.ROWID desc" : " order by hi.id";
  Database::Statement rows(database, query.c_str());
  const int id = rows.Column("id");
  const int url = rows.Column("url");
  const int visitCount = rows.Column("visit_count");
  const int visitTime = rows.Column("visit_time");
  const int title = rows.Column("title");
  int64_t item = 0;
  while (rows.Step()) {
    if (entries.empty() || rows.Int64(id) != item) {
      item = rows.Int64(id);
      SafariEntry entry;
      entry.url = Text(rows, url);
      entry.visitCount = rows.Int64(visitCount);
      entries.push_back(std::move(entry));
    }
    if (rows.IsNull(visitTime) && rows.IsNull(title)) continue;
    LocalDate visited = LocalDateOf(rows.Text(visitTime), TimeBase::Since2001);
    entries.back().visits.push_back({std::move(visited.text), Text(rows, title), visited.instant});
  }
  for (SafariEntry& entry : entries) {
    entry.visits = NewestFirst(std::move(entry.visits), &SafariEntry::Visit::instant);
    if (!entry.visits.empty()) {
      entry.date = entry.visits.front().date;
      entry.instant = entry.visits.front().instant;
    }
    for (const SafariEntry::Visit& visit : entry.visits) {
      if (!visit.title.empty()) {
        entry.title = visit.title;
        break;
      }
    }
  }
  return entries;
}

std::vector<SafariEntry> ReadHistoryTombstones(Database& database) {
  const SchemaInfo schema(database);
  std::vector<SafariEntry> entries;
  if (!schema.HasColumn("history_tombstones", "url")) return entries;
  const std::string query = "select " + schema.SelectList("history_tombstones", {"url", "end_time"}) +
                            " from history_tombstones order by history_tombstones.ROWID";
  Database::Statement rows(database, query.c_str());
  const int url = rows.Column("url");
  const int end = rows.Column("end_time");
  while (rows.Step()) {
    SafariEntry entry;
    entry.url = Text(rows, url);
    if (entry.url.empty()) continue;
    LocalDate date = LocalDateOf(rows.Text(end), TimeBase::Since2001);
    entry.date = std::move(date.text);
    entry.instant = date.instant;
    entries.push_back(std::move(entry));
  }
  return entries;
}

std::vector<SafariEntry> ReadBookmarks(Database& database) {
  const SchemaInfo schema(database);
  std::vector<SafariEntry> entries;
  if (!schema.HasTable("bookmarks")) return entries;
  std::string query =
      "select " + schema.SelectList("bookmarks", {"title", "url", "last_modified"}) + " from bookmarks";
  if (schema.HasColumn("bookmarks", "deleted")) query += " where ifnull(bookmarks.deleted, 0) = 0";
  query += " order by bookmarks.ROWID";
  Database::Statement rows(database, query.c_str());
  const int title = rows.Column("title");
  const int url = rows.Column("url");
  const int modified = rows.Column("last_modified");
  while (rows.Step()) {
    SafariEntry entry;
    entry.url = Text(rows, url);
    if (entry.url.empty()) continue;
    entry.bookmark = true;
    entry.title = Text(rows, title);
    // iOS 18 keeps Unix seconds here, older devices seconds since 2001.
    entry.date = LocalDateText(rows.Text(modified), TimeBase::ByMagnitude);
    entry.visitCount = 1;
    entries.push_back(std::move(entry));
  }
  return entries;
}

std::vector<SafariEntry> ReadHistoryList(const std::string& path) {
  std::vector<SafariEntry> entries;
  const OwnedPlist root(ReadPlist(path.c_str()));
  if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return entries;
  plist_t dates = plist_dict_get_item(root.get(), "WebHistoryDates");
  if (plist_get_node_type(dates) != PLIST_ARRAY) return entries;
  plist_array_iter iter = nullptr;
  plist_array_new_iter(dates, &iter);
  for (plist_t element = nullptr;;) {
    plist_array_next_item(dates, iter, &element);
    if (!element) break;
    if (std::optional<SafariEntry> entry = PlistEntry(element)) entries.push_back(std::move(*entry));
  }
  std::free(iter);
  return entries;
}

}  // namespace current
