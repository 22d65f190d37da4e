#include "kinds/History.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <string>

#include "kinds/KindFixture.h"
#include "support/BackupBuilder.h"
#include "support/PlistDump.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const char kDomain[] = "HomeDomain";
const char kPlistPath[] = "Library/Safari/History.plist";
const char kHistoryDbPath[] = "Library/Safari/History.db";
const char kBookmarksPath[] = "Library/Safari/Bookmarks.db";

// 2014-01-01 00:00:00 UTC and 2014-07-04 12:30:00 UTC as seconds since 2001.
const int32_t kWinter = 410227200;
const int32_t kSummer = 426169800;

std::string PlistBytes(plist_t root, bool binary) {
  char* bytes = nullptr;
  uint32_t length = 0;
  if (binary) {
    plist_to_bin(root, &bytes, &length);
  } else {
    plist_to_xml(root, &bytes, &length);
  }
  std::string out(bytes, length);
  std::free(bytes);
  plist_free(root);
  return out;
}

// A history property list as the device writes it: the address under the
// empty key first, then the title, the date text and the visit count.
plist_t Visit(const char* url, const char* title, const char* date, uint64_t count) {
  plist_t element = plist_new_dict();
  plist_dict_set_item(element, "", plist_new_string(url));
  if (title) plist_dict_set_item(element, "title", plist_new_string(title));
  plist_dict_set_item(element, "lastVisitedDate", plist_new_string(date));
  plist_dict_set_item(element, "visitCount", plist_new_uint(count));
  return element;
}

std::string HistoryPlist(plist_t elements, bool binary = true) {
  plist_t root = plist_new_dict();
  plist_dict_set_item(root, "WebHistoryDates", elements);
  plist_dict_set_item(root, "WebHistoryFileVersion", plist_new_uint(1));
  return PlistBytes(root, binary);
}

plist_t Elements(std::initializer_list<plist_t> items) {
  plist_t array = plist_new_array();
  for (plist_t item : items) plist_array_append_item(array, item);
  return array;
}

std::string Entry(const std::string& url, const std::string& type, const std::string& title,
                  const std::string& date, const std::string& count) {
  return "{\"url\":\"" + url + "\",\"type\":\"" + type + "\",\"title\":\"" + title +
         "\",\"lastVisitedDate\":\"" + date + "\",\"visitCount\":" + count + "}";
}

const char kOnePageVisitedOnce[] =
    "INSERT INTO history_items (id, url, visit_count, daily_visit_counts,"
    " should_recompute_derived_visit_counts, visit_count_score)"
    " VALUES (1,'https://db.example/',1,x'00',0,100);"
    "INSERT INTO history_visits (id, history_item, visit_time, title)"
    " VALUES (1,1,426169800.25,'Db page');";

const char kOneBookmark[] =
    "INSERT INTO bookmarks (id, parent, type, title, url, order_index, last_modified)"
    " VALUES (1,0,0,'Mark','https://mark.example/',0,410227200);";

class HistoryTest : public ::testing::TestWithParam<const char*> {
 protected:
  HistoryTest() : zone_(GetParam()) {}

  std::string Write(const BackupBuilder& builder) { return builder.Write(dir_.Path() + "backup"); }

  ScopedTimeZone zone_;
  TempDir dir_;
  History history_;
};

INSTANTIATE_TEST_SUITE_P(Zones, HistoryTest, ::testing::Values("UTC", "America/New_York"));

TEST_P(HistoryTest, ManifestDbBackupGivesHistoryButNoBookmarks) {
  const std::string plist =
      HistoryPlist(Elements({Visit("https://plist.example/", "Plist page", "410227200.5", 4)}));
  const std::string path = Write(BackupBuilder(IndexKind::ManifestDb)
                                     .AddDatabase(kDomain, kBookmarksPath, Schema("Bookmarks.db-ios7") + kOneBookmark)
                                     .AddDatabase(kDomain, kHistoryDbPath, Schema("History.db-safari") + kOnePageVisitedOnce)
                                     .AddFile(kDomain, kPlistPath, plist));
  AnalysedDevice device(path, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)),
            "[" + Entry("https://plist.example/", "history", "Plist page", LocalDate2001(kWinter), "4u") + "," +
                Entry("https://db.example/", "history", "Db page", LocalDate2001(kSummer), "1u") + "]");
}

TEST_P(HistoryTest, EachVisitOfAPageIsOneEntryWithThePageTotal) {
  const std::string sql =
      Schema("History.db-safari") +
      "INSERT INTO history_items (id, url, visit_count, daily_visit_counts,"
      " should_recompute_derived_visit_counts, visit_count_score)"
      " VALUES (7,'https://news.example/',3,x'00',0,100);"
      "INSERT INTO history_visits (id, history_item, visit_time, title) VALUES"
      " (1,7,410227200,'Morning news'),(2,7,426169800,NULL),(3,7,0,'Old news');";
  const std::string path = Write(BackupBuilder(IndexKind::ManifestDb).AddDatabase(kDomain, kHistoryDbPath, sql));
  AnalysedDevice device(path, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)),
            "[" + Entry("https://news.example/", "history", "Morning news", LocalDate2001(kWinter), "3u") + "," +
                Entry("https://news.example/", "history", "", LocalDate2001(kSummer), "3u") + "," +
                Entry("https://news.example/", "history", "Old news", LocalDate2001(0), "3u") + "]");
}

TEST_P(HistoryTest, MissingVisitCountCountsZeroAndNegativeKeepsItsSign) {
  // Real databases forbid a NULL count; a damaged one may still hold one.
  std::string schema = Schema("History.db-safari");
  const std::string notNull = "visit_count INTEGER NOT NULL";
  schema.replace(schema.find(notNull), notNull.size(), "visit_count INTEGER");
  const std::string sql = schema +
                          "INSERT INTO history_items (id, url, visit_count, daily_visit_counts,"
                          " should_recompute_derived_visit_counts, visit_count_score) VALUES"
                          " (1,'https://a.example/',NULL,x'00',0,0),(2,'https://b.example/',-1,x'00',0,0);"
                          "INSERT INTO history_visits (id, history_item, visit_time, title) VALUES"
                          " (1,1,410227200,'A'),(2,2,410227200,'B');";
  const std::string path = Write(BackupBuilder(IndexKind::ManifestDb).AddDatabase(kDomain, kHistoryDbPath, sql));
  AnalysedDevice device(path, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)),
            "[" + Entry("https://a.example/", "history", "A", LocalDate2001(kWinter), "0u") + "," +
                Entry("https://b.example/", "history", "B", LocalDate2001(kWinter), "18446744073709551615u") +
                "]");
}

TEST_P(HistoryTest, VisitWithoutTimeShowsThePresentDate) {
  // Real databases forbid a NULL time; a damaged one may still hold one.
  std::string schema = Schema("History.db-safari");
  const std::string notNull = "visit_time REAL NOT NULL";
  schema.replace(schema.find(notNull), notNull.size(), "visit_time REAL");
  const std::string sql = schema +
                          "INSERT INTO history_items (id, url, visit_count, daily_visit_counts,"
                          " should_recompute_derived_visit_counts, visit_count_score)"
                          " VALUES (1,'https://undated.example/',2,x'00',0,0);"
                          "INSERT INTO history_visits (id, history_item, visit_time, title)"
                          " VALUES (1,1,NULL,'Undated');";
  const std::string path = Write(BackupBuilder(IndexKind::ManifestDb).AddDatabase(kDomain, kHistoryDbPath, sql));
  AnalysedDevice device(path, IndexKind::ManifestDb);

  const std::string before = NowText();
  const std::string answer = DumpAndFree(history_.FindContent(device.Get(), 0));
  const std::string after = NowText();
  auto expected = [](const std::string& now) {
    return "[" + Entry("https://undated.example/", "history", "Undated", now, "2u") + "]";
  };
  EXPECT_TRUE(answer == expected(before) || answer == expected(after)) << answer;
}

TEST_P(HistoryTest, MbdbBackupGivesPlistHistoryThenBookmarks) {
  const std::string bookmarks =
      Schema("Bookmarks.db-ios7") +
      "INSERT INTO bookmarks (id, parent, type, title, url, order_index, last_modified) VALUES"
      " (1,0,1,'Favorites',NULL,0,410227200),"
      " (2,1,0,'Capital null','NULL',1,410227200),"
      " (3,1,0,'Empty','',2,410227200),"
      " (4,1,0,'Kept','https://kept.example/',3,426169800),"
      " (5,1,0,NULL,'null',4,410227200);";
  const std::string plist = HistoryPlist(Elements({Visit("https://plist.example/", "P", "426169800", 2)}));
  const std::string path = Write(BackupBuilder(IndexKind::Mbdb)
                                     .AddDatabase(kDomain, kBookmarksPath, bookmarks)
                                     .AddFile(kDomain, kPlistPath, plist));
  AnalysedDevice device(path, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)),
            "[" + Entry("https://plist.example/", "history", "P", LocalDate2001(kSummer), "2u") + "," +
                Entry("https://kept.example/", "bookmark", "Kept", LocalDate2001(kSummer), "1u") + "," +
                Entry("null", "bookmark", "", LocalDate2001(kWinter), "1u") + "]");
}

TEST_P(HistoryTest, BookmarkWithoutDateShowsThePresentDate) {
  const std::string bookmarks =
      Schema("Bookmarks.db-ios7") +
      "INSERT INTO bookmarks (id, parent, type, title, url, order_index, last_modified)"
      " VALUES (1,0,0,'Undated','https://undated.example/',0,NULL);";
  const std::string path = Write(BackupBuilder(IndexKind::Mbdb).AddDatabase(kDomain, kBookmarksPath, bookmarks));
  AnalysedDevice device(path, IndexKind::Mbdb);

  const std::string before = NowText();
  const std::string answer = DumpAndFree(history_.FindContent(device.Get(), 0));
  const std::string after = NowText();
  auto expected = [](const std::string& now) {
    return "[" + Entry("https://undated.example/", "bookmark", "Undated", now, "1u") + "]";
  };
  EXPECT_TRUE(answer == expected(before) || answer == expected(after)) << answer;
}

TEST_P(HistoryTest, PlistElementsKeepTheirOwnShape) {
  plist_t untitled = Visit("https://untitled.example/", nullptr, "410227200", 1);
  // The address is the first entry whatever its key; unknown keys are dropped
  // and the others follow in their stored order.
  plist_t reordered = plist_new_dict();
  plist_dict_set_item(reordered, "address", plist_new_string("https://first.example/"));
  plist_dict_set_item(reordered, "visitCount", plist_new_uint(9));
  plist_dict_set_item(reordered, "D", Elements({plist_new_uint(1)}));
  plist_dict_set_item(reordered, "lastVisitedDate", plist_new_string("426169800.9"));
  plist_dict_set_item(reordered, "title", plist_new_string("Reordered"));
  // A date of another node type counts as 0 seconds.
  plist_t realDate = plist_new_dict();
  plist_dict_set_item(realDate, "", plist_new_string("https://real.example/"));
  plist_dict_set_item(realDate, "lastVisitedDate", plist_new_real(426169800.0));
  plist_t urlOnly = plist_new_dict();
  plist_dict_set_item(urlOnly, "", plist_new_uint(5));
  const std::string plist = HistoryPlist(
      Elements({untitled, plist_new_dict(), plist_new_string("not a dict"), reordered, realDate, urlOnly}));
  const std::string path = Write(BackupBuilder(IndexKind::Mbdb).AddFile(kDomain, kPlistPath, plist));
  AnalysedDevice device(path, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)),
            "[{\"url\":\"https://untitled.example/\",\"type\":\"history\",\"lastVisitedDate\":\"" +
                LocalDate2001(kWinter) + "\",\"visitCount\":1u}," +
                "{\"url\":\"https://first.example/\",\"type\":\"history\",\"visitCount\":9u,"
                "\"lastVisitedDate\":\"" +
                LocalDate2001(kSummer) + "\",\"title\":\"Reordered\"}," +
                "{\"url\":\"https://real.example/\",\"type\":\"history\",\"lastVisitedDate\":\"" +
                LocalDate2001(0) + "\"}," + "{\"url\":5u,\"type\":\"history\"}]");
}

TEST_P(HistoryTest, XmlPlistIsReadToo) {
  const std::string plist =
      HistoryPlist(Elements({Visit("https://xml.example/", "Xml", "410227200", 3)}), false);
  const std::string path = Write(BackupBuilder(IndexKind::ManifestDb).AddFile(kDomain, kPlistPath, plist));
  AnalysedDevice device(path, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)),
            "[" + Entry("https://xml.example/", "history", "Xml", LocalDate2001(kWinter), "3u") + "]");
}

TEST_P(HistoryTest, UnusablePropertyListsAddNothing) {
  plist_t noDates = plist_new_dict();
  plist_dict_set_item(noDates, "WebHistoryFileVersion", plist_new_uint(1));
  plist_t datesNotArray = plist_new_dict();
  plist_dict_set_item(datesNotArray, "WebHistoryDates", plist_new_string("x"));
  const char* domains[] = {"HomeDomain", "AppDomain-a", "AppDomain-b", "AppDomain-c", "AppDomain-d", "AppDomain-e"};
  const std::string bodies[] = {"",
                                "not a property list",
                                PlistBytes(noDates, true),
                                PlistBytes(datesNotArray, false),
                                HistoryPlist(plist_new_array()),
                                PlistBytes(Elements({plist_new_string("root is an array")}), true)};
  BackupBuilder builder(IndexKind::ManifestDb);
  for (size_t i = 0; i < 6; ++i) builder.AddFile(domains[i], kPlistPath, bodies[i]);
  const std::string path = Write(builder);
  AnalysedDevice device(path, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)), "[]");
}

TEST_P(HistoryTest, NothingToReadGivesAnEmptyArrayEveryTime) {
  const std::string path = Write(BackupBuilder(IndexKind::ManifestDb).AddFile(kDomain, "Library/x.txt", "x"));
  AnalysedDevice device(path, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)), "[]");
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)), "[]");
  device.Get()->backupType = 2;
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)), "[]");
}

TEST_P(HistoryTest, MbdbBackupHasNoHistoryDatabase) {
  const std::string path = Write(BackupBuilder(IndexKind::Mbdb)
                                     .AddDatabase(kDomain, kHistoryDbPath, Schema("History.db-safari") + kOnePageVisitedOnce));
  AnalysedDevice device(path, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)), "[]");
}

TEST_P(HistoryTest, EveryCallReadsAgainIntoANewArray) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kDomain, kHistoryDbPath, Schema("History.db-safari") + kOnePageVisitedOnce);
  const std::string path = Write(builder);
  AnalysedDevice device(path, IndexKind::ManifestDb);
  plist_t first = history_.FindContent(device.Get(), 0);
  plist_t second = history_.FindContent(device.Get(), 0);
  EXPECT_NE(first, second);
  const std::string expected =
      "[" + Entry("https://db.example/", "history", "Db page", LocalDate2001(kSummer), "1u") + "]";
  EXPECT_EQ(DumpAndFree(first), expected);
  EXPECT_EQ(DumpAndFree(second), expected);

  // Nothing is kept: the next call sees the database as it is now.
  WriteDatabase(path + builder.StoredPath(kDomain, kHistoryDbPath),
                "INSERT INTO history_visits (id, history_item, visit_time, title) VALUES (2,1,410227200,'Again');");
  EXPECT_EQ(DumpAndFree(history_.FindContent(device.Get(), 0)),
            "[" + Entry("https://db.example/", "history", "Db page", LocalDate2001(kSummer), "1u") + "," +
                Entry("https://db.example/", "history", "Again", LocalDate2001(kWinter), "1u") + "]");
}

TEST_P(HistoryTest, LeavesTheBackupUntouched) {
  const std::string plist = HistoryPlist(Elements({Visit("https://plist.example/", "P", "410227200", 1)}));
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir dir;
    const std::string path = BackupBuilder(kind)
                                 .AddFile(kDomain, kPlistPath, plist)
                                 .AddDatabase(kDomain, kHistoryDbPath, Schema("History.db-safari") + kOnePageVisitedOnce)
                                 .AddDatabase(kDomain, kBookmarksPath, Schema("Bookmarks.db-ios7") + kOneBookmark)
                                 .Write(dir.Path() + "backup");
    const std::string before = SnapshotTree(path);
    AnalysedDevice device(path, kind);
    History history;
    EXPECT_NE(DumpAndFree(history.FindContent(device.Get(), 0)), "[]");
    EXPECT_EQ(SnapshotTree(path), before);
  }
}

}  // namespace
}  // namespace yhtest
