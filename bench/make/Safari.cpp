#include <plist/plist.h>

#include "Generation.h"
#include "Sql.h"

namespace bench {
namespace {

std::string PageUrl(Random& random, size_t page) {
  return "https://www." + random.Word() + std::to_string(page % 97) + ".example.com/" + random.Word() + "/" +
         std::to_string(page);
}

// Older devices keep their history in a property list: one entry per page
// with its last visit.
std::string HistoryPlist(Generation& generation) {
  Random& random = generation.random;
  plist_t dates = plist_new_array();
  for (size_t visit = 0; visit < generation.counts.visits; ++visit) {
    plist_t entry = plist_new_dict();
    plist_dict_set_item(entry, "", plist_new_string(PageUrl(random, visit).c_str()));
    plist_dict_set_item(entry, "title", plist_new_string(random.Words(3).c_str()));
    plist_dict_set_item(entry, "lastVisitedDate",
                        plist_new_string((std::to_string(DeviceTime(random)) + ".5").c_str()));
    plist_dict_set_item(entry, "visitCount", plist_new_uint(1 + random.Below(20)));
    plist_array_append_item(dates, entry);
  }
  plist_t root = plist_new_dict();
  plist_dict_set_item(root, "WebHistoryDates", dates);
  plist_dict_set_item(root, "WebHistoryFileVersion", plist_new_uint(1));
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  std::string text(bytes, length);
  plist_to_bin_free(bytes);
  plist_free(root);
  return text;
}

std::string Bookmarks(Generation& generation) {
  Random& random = generation.random;
  SqlScript sql("Bookmarks.db-ios7");
  sql.Insert("bookmarks", "id, special_id, parent, type, title, url, order_index", "0, 0, NULL, 1, 'Root', NULL, 0");
  for (size_t bookmark = 1; bookmark <= generation.counts.bookmarks; ++bookmark) {
    sql.Insert("bookmarks", "id, parent, type, title, url, order_index, last_modified",
               std::to_string(bookmark) + ", 0, 0, " + Quote(random.Words(2)) + ", " +
                   Quote(PageUrl(random, bookmark)) + ", " + std::to_string(bookmark) + ", " +
                   std::to_string(DeviceTime(random)));
  }
  return sql.Text();
}

std::string HistoryDb(Generation& generation) {
  Random& random = generation.random;
  SqlScript sql("History.db-safari");
  const size_t pages = generation.counts.pages;
  for (size_t page = 1; page <= pages; ++page) {
    sql.Insert("history_items",
               "id, url, visit_count, daily_visit_counts, should_recompute_derived_visit_counts, visit_count_score",
               std::to_string(page) + ", " + Quote(PageUrl(random, page)) + ", " +
                   std::to_string(1 + random.Below(50)) + ", X'', 0, 0");
  }
  for (size_t visit = 1; visit <= generation.counts.visits; ++visit) {
    sql.Insert("history_visits", "id, history_item, visit_time, title",
               std::to_string(visit) + ", " + std::to_string(1 + random.Skewed(pages)) + ", " +
                   std::to_string(DeviceTime(random)) + ".25, " + Quote(random.Words(3)));
  }
  return sql.Text();
}

}  // namespace

void AddSafari(Generation& generation) {
  if (generation.Newer()) {
    generation.rows.Database("AppDomain-com.apple.mobilesafari", "Library/Safari/History.db", HistoryDb(generation));
    return;
  }
  generation.rows.FileWith("HomeDomain", "Library/Safari/History.plist", HistoryPlist(generation));
  generation.rows.Database("HomeDomain", "Library/Safari/Bookmarks.db", Bookmarks(generation));
}

}  // namespace bench
