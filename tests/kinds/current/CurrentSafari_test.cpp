#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};
const char kHistoryDb[] = "Library/Safari/History.db";
const char kSafariDomain[] = "AppDomain-com.apple.mobilesafari";

struct Visit {
  std::string date, title;
};

struct Page {
  std::string url, type, title, date;
  int count;
  std::vector<Visit> visits;
};

std::string Expected(const std::vector<Page>& pages) {
  std::string text = "[";
  for (const Page& p : pages) {
    if (text.size() > 1) text += ",";
    text += "{\"url\":\"" + p.url + "\",\"type\":\"" + p.type + "\",\"title\":\"" + p.title +
            "\",\"lastVisitedDate\":\"" + p.date + "\",\"visitCount\":" + std::to_string(p.count) + "u,\"visits\":[";
    for (size_t i = 0; i < p.visits.size(); ++i) {
      text += std::string(i ? "," : "") + "{\"date\":\"" + p.visits[i].date + "\",\"title\":\"" + p.visits[i].title +
              "\"}";
    }
    text += "]}";
  }
  return text + "]";
}

// Two pages in the home domain's database: one visited three times (once
// by a redirect without a title), one visited once.
const char kHomeHistory[] =
    "INSERT INTO history_items (id, url, visit_count, daily_visit_counts, should_recompute_derived_visit_counts, "
    "visit_count_score) VALUES (1, 'https://example.org/a', 3, X'', 0, 0), (2, 'https://example.org/b', 1, X'', 0, 0);\n"
    "INSERT INTO history_visits (id, history_item, visit_time, title) VALUES "
    "(1, 1, 583675200, 'A page'), (2, 1, 600000000, 'A page, renamed'), (3, 1, 583675300, NULL), "
    "(4, 2, 583751700, 'B page');\n";
// A page in Safari's own domain whose only visit (in 2040) is in the -wal.
const char kSafariItem[] =
    "INSERT INTO history_items (id, url, visit_count, daily_visit_counts, should_recompute_derived_visit_counts, "
    "visit_count_score) VALUES (1, 'https://example.org/c', 1, X'', 0, 0);\n";
const char kSafariVisit[] =
    "INSERT INTO history_visits (id, history_item, visit_time, title) VALUES (1, 1, 1235908800, 'C page');\n";
// A folder, a bookmark with a date, one without, and a deleted one.
const char kBookmarks[] =
    "INSERT INTO bookmarks (id, parent, type, title, url, order_index, last_modified, deleted) VALUES "
    "(1, 0, 1, 'BookmarksBar', NULL, 0, NULL, 0), (2, 1, 0, 'Example', 'https://example.org/', 0, 583675200, 0), "
    "(3, 1, 0, 'No date', 'https://example.net/', 1, NULL, 0), "
    "(4, 1, 0, 'Removed', 'https://example.com/', 2, 583675200, 1);\n";

std::string WriteSafariBackup(const TempDir& root, IndexKind kind) {
  const std::string history = Schema("History.db-safari");
  return BackupBuilder(kind)
      .AddDatabase("HomeDomain", kHistoryDb, history + kHomeHistory)
      .AddDatabaseWithWal(kSafariDomain, kHistoryDb, history + kSafariItem, kSafariVisit)
      .AddDatabase("HomeDomain", "Library/Safari/Bookmarks.db", Schema("Bookmarks.db-ios7") + kBookmarks)
      .Write(root.Path() + "b");
}

TEST(CurrentSafari, BothHistoryDatabasesWithEveryVisitThenBookmarks) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = WriteSafariBackup(root, kind);
    for (const auto& [zone, summer, winter, later, nextDay] :
         {std::tuple<const char*, const char*, const char*, const char*, const char*>{
              "UTC", "2019-07-01 12:0", "2020-01-06 10:40:00", "2040-03-01 12:00:00", "2019-07-02 09:15:00"},
          {"America/New_York", "2019-07-01 08:0", "2020-01-06 05:40:00", "2040-03-01 07:00:00",
           "2019-07-02 05:15:00"}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      const std::string summerHour = summer;
      EXPECT_EQ(served.Answer(ContentSafariHistory),
                Expected({
                    {"https://example.org/c", "history", "C page", later, 1, {{later, "C page"}}},
                    {"https://example.org/a",
                     "history",
                     "A page, renamed",
                     winter,
                     3,
                     {{winter, "A page, renamed"}, {summerHour + "1:40", ""}, {summerHour + "0:00", "A page"}}},
                    {"https://example.org/b", "history", "B page", nextDay, 1, {{nextDay, "B page"}}},
                    {"https://example.org/", "bookmark", "Example", summerHour + "0:00", 1, {}},
                    {"https://example.net/", "bookmark", "No date", "", 1, {}},
                }))
          << zone;
    }
  }
}

TEST(CurrentSafari, TheDescribedServiceStillLeavesBookmarksOutOnManifestDb) {
  TempDir root;
  const std::string backup = WriteSafariBackup(root, IndexKind::ManifestDb);
  ScopedTimeZone utc("UTC");
  ServedBackup described(backup, Service::Described);
  const std::string answer = described.Answer(ContentSafariHistory);
  EXPECT_EQ(answer.find("bookmark"), std::string::npos);
  EXPECT_EQ(answer.find("visits"), std::string::npos);
  EXPECT_NE(answer.find("\"title\":\"A page\""), std::string::npos);
}

TEST(CurrentSafari, TheOldHistoryListWithTrueDates) {
  const std::string list =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>WebHistoryDates</key><array>"
      "<dict><key></key><string>https://old.example/</string><key>title</key><string>Old page</string>"
      "<key>lastVisitedDate</key><string>583675200.5</string><key>visitCount</key><integer>4</integer></dict>"
      "<dict><key></key><string>https://older.example/</string><key>lastVisitedDate</key><string>600000000</string>"
      "</dict></array></dict></plist>\n";
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup =
        BackupBuilder(kind).AddFile("HomeDomain", "Library/Safari/History.plist", list).Write(root.Path() + "b");
    for (const auto& [zone, summer, winter] :
         {std::tuple<const char*, const char*, const char*>{"UTC", "2019-07-01 12:00:00", "2020-01-06 10:40:00"},
          {"America/New_York", "2019-07-01 08:00:00", "2020-01-06 05:40:00"}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      EXPECT_EQ(served.Answer(ContentSafariHistory),
                Expected({{"https://old.example/", "history", "Old page", summer, 4, {{summer, "Old page"}}},
                          {"https://older.example/", "history", "", winter, 0, {{winter, ""}}}}))
          << zone;
    }
  }
}

// Bookmarks.db of iOS 18 keeps last_modified in Unix seconds where older
// ones count from 2001: both read as the same day.
TEST(CurrentSafari, BookmarkDatesAreReadByTheirMagnitude) {
  const char kDates[] =
      "INSERT INTO bookmarks (id, parent, type, title, url, order_index, last_modified, deleted) VALUES "
      "(1, 0, 0, 'Since 2001', 'https://example.org/2001', 0, 583675200, 0), "
      "(2, 0, 0, 'Unix', 'https://example.org/unix', 1, 1561982400.5, 0);\n";
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabase("HomeDomain", "Library/Safari/Bookmarks.db", Schema("Bookmarks.db-ios7") + kDates)
                                 .Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentSafariHistory),
            Expected({{"https://example.org/2001", "bookmark", "Since 2001", "2019-07-01 12:00:00", 1, {}},
                      {"https://example.org/unix", "bookmark", "Unix", "2019-07-01 12:00:00", 1, {}}}));
}

// A visit whose time is no number (or no date) sorts after every visit with
// a date and is never taken as the page's last visit.
TEST(CurrentSafari, AnUnreadableVisitIsNeverTheLast) {
  const char kVisits[] =
      "INSERT INTO history_items (id, url, visit_count, daily_visit_counts, should_recompute_derived_visit_counts, "
      "visit_count_score) VALUES (1, 'https://example.org/a', 3, X'', 0, 0);\n"
      "INSERT INTO history_visits (id, history_item, visit_time, title) VALUES "
      "(1, 1, 'yesterday', 'Broken'), (2, 1, 583675200, 'Good'), (3, 1, 1e300, 'Far');\n";
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabase("HomeDomain", kHistoryDb, Schema("History.db-safari") + kVisits)
                                 .Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentSafariHistory),
            Expected({{"https://example.org/a",
                       "history",
                       "Good",
                       "2019-07-01 12:00:00",
                       3,
                       {{"2019-07-01 12:00:00", "Good"}, {"", "Broken"}, {"", "Far"}}}}));
}

TEST(CurrentSafari, ABackupWithoutSafariAnswersAnEmptyList) {
  TempDir root;
  ServedBackup served(BackupBuilder(IndexKind::Mbdb).Write(root.Path() + "b"), Service::Current);
  EXPECT_EQ(served.Answer(ContentSafariHistory), "[]");
}

}  // namespace
}  // namespace yhtest
