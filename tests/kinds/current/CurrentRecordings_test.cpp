#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};
const char* const kGroup = "AppDomainGroup-group.com.apple.VoiceMemos.shared";
const char* const kOldDb = "Media/Recordings/Recordings.db";
const char* const kCloudDb = "Media/Recordings/CloudRecordings.db";
const char* const kGroupDb = "Recordings/CloudRecordings.db";

struct Memo {
  std::string date, title, duration, name, path;
  unsigned size;
  bool present, deleted;
};

std::string Expected(const std::vector<Memo>& memos) {
  std::string text = "[";
  for (const Memo& memo : memos) {
    if (text.size() > 1) text += ",";
    text += "{\"date\":\"" + memo.date + "\",\"title\":\"" + memo.title + "\",\"duration\":\"" + memo.duration +
            "\",\"name\":\"" + memo.name + "\",\"path\":\"" + memo.path + "\",\"size\":" + std::to_string(memo.size) +
            "u,\"present\":" + (memo.present ? "true" : "false") + ",\"deleted\":" + (memo.deleted ? "true" : "false") +
            "}";
  }
  return text + "]";
}

// iOS 11 and before: device paths in ZPATH.
std::string OldMemos() {
  return Schema("Recordings.db-ios7") +
         "INSERT INTO ZRECORDING (Z_PK, ZDATE, ZDURATION, ZCUSTOMLABEL, ZPATH) VALUES "
         "(1, 583675200, 65.9, 'Lecture', '/var/mobile/Media/Recordings/20190701 120000.m4a'), "
         "(2, NULL, NULL, NULL, '/var/mobile/Media/Recordings/gone.m4a');\n";
}

// iOS 12 on: file names in ZPATH, the title in ZENCRYPTEDTITLE when the label is empty.
std::string CloudMemos(const std::string& rows) {
  return Schema("CloudRecordings.db-ios14") +
         "INSERT INTO ZCLOUDRECORDING (Z_PK, ZDATE, ZDURATION, ZCUSTOMLABEL, ZENCRYPTEDTITLE, ZPATH, ZEVICTIONDATE) "
         "VALUES " + rows + ";\n";
}

TEST(CurrentRecordings, EveryGenerationWithTrueDatesAndFilesLocatedExactly) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    BackupBuilder builder(kind);
    builder.AddDatabase("MediaDomain", kOldDb, OldMemos())
        .AddFile("MediaDomain", "Media/Recordings/20190701 120000.m4a", "m4a old")
        .AddFile("MediaDomain", "Media/Recordings/Old/gone.m4a", "elsewhere")
        .AddDatabase("MediaDomain", kCloudDb,
                     CloudMemos("(1, 596901600, 3599.5, '', 'Choir', '20191201 140000-AB12CD34.m4a', NULL)"))
        .AddFile("MediaDomain", "Media/Recordings/20191201 140000-AB12CD34.m4a", "m4a cloud")
        .AddDatabase(kGroup, kGroupDb,
                     CloudMemos("(1, 1235908800, 7, NULL, 'Far ahead', '20400301 120000-EF56.m4a', 1235908900)"))
        .AddFile(kGroup, "Recordings/20400301 120000-EF56.m4a", "m4a");
    const std::string backup = builder.Write(root.Path() + "b");
    const std::string old = backup + builder.StoredPath("MediaDomain", "Media/Recordings/20190701 120000.m4a");
    const std::string cloud =
        backup + builder.StoredPath("MediaDomain", "Media/Recordings/20191201 140000-AB12CD34.m4a");
    const std::string group = backup + builder.StoredPath(kGroup, "Recordings/20400301 120000-EF56.m4a");
    for (const auto& [zone, hours] :
         {std::pair<const char*, std::vector<std::string>>{"UTC", {"12", "14", "12"}},
          {"America/New_York", {"08", "09", "07"}}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      EXPECT_EQ(served.Answer(ContentRecording),
                Expected({
                    {"2019-07-01 " + hours[0] + ":00:00", "Lecture", "00:01:05", "20190701 120000.m4a", old, 7, true,
                     false},
                    {"", "", "00:00:00", "gone.m4a", "", 0, false, false},
                    {"2019-12-01 " + hours[1] + ":00:00", "Choir", "00:59:59", "20191201 140000-AB12CD34.m4a", cloud,
                     9, true, false},
                    {"2040-03-01 " + hours[2] + ":00:00", "Far ahead", "00:00:07", "20400301 120000-EF56.m4a", group,
                     3, true, true},
                }))
          << zone;
    }
  }
}

TEST(CurrentRecordings, TheDescribedServiceStillDropsAMemoWithoutItsFile) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabase("MediaDomain", kOldDb, OldMemos())
                                 .AddFile("MediaDomain", "Media/Recordings/20190701 120000.m4a", "m4a old")
                                 .Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup described(backup, Service::Described);
  const std::string answer = described.Answer(ContentRecording);
  EXPECT_NE(answer.find("20190701 120000.m4a"), std::string::npos);
  EXPECT_EQ(answer.find("gone.m4a"), std::string::npos);
}

TEST(CurrentRecordings, AFileNamedByTwoDatabasesIsListedOnce) {
  TempDir root;
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase("MediaDomain", kOldDb, OldMemos())
      .AddDatabase("MediaDomain", kCloudDb,
                   CloudMemos("(1, 583675200, 65, 'Lecture', NULL, '20190701 120000.m4a', NULL)"))
      .AddFile("MediaDomain", "Media/Recordings/20190701 120000.m4a", "m4a old");
  const std::string backup = builder.Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  const std::string old = backup + builder.StoredPath("MediaDomain", "Media/Recordings/20190701 120000.m4a");
  EXPECT_EQ(served.Answer(ContentRecording),
            Expected({{"2019-07-01 12:00:00", "Lecture", "00:01:05", "20190701 120000.m4a", old, 7, true, false},
                      {"", "", "00:00:00", "gone.m4a", "", 0, false, false}}));
}

TEST(CurrentRecordings, RowsKeptOnlyInTheWalAreRead) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    BackupBuilder builder(kind);
    builder
        .AddDatabaseWithWal(kGroup, kGroupDb, CloudMemos("(1, 583675200, 1, 'In the file', NULL, 'a.m4a', NULL)"),
                            "INSERT INTO ZCLOUDRECORDING (Z_PK, ZDATE, ZDURATION, ZCUSTOMLABEL, ZPATH) VALUES "
                            "(2, 583675260, 2, 'In the log', 'b.m4a');\n")
        .AddFile(kGroup, "Recordings/b.m4a", "b");
    const std::string backup = builder.Write(root.Path() + "b");
    ScopedTimeZone utc("UTC");
    ServedBackup served(backup, Service::Current);
    EXPECT_EQ(served.Answer(ContentRecording),
              Expected({{"2019-07-01 12:00:00", "In the file", "00:00:01", "a.m4a", "", 0, false, false},
                        {"2019-07-01 12:01:00", "In the log", "00:00:02", "b.m4a",
                         backup + builder.StoredPath(kGroup, "Recordings/b.m4a"), 1, true, false}}));
  }
}

TEST(CurrentRecordings, ATableWithoutItsLaterColumnsStillLists) {
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::Mbdb)
          .AddDatabase("MediaDomain", kCloudDb,
                       "CREATE TABLE ZCLOUDRECORDING (Z_PK INTEGER PRIMARY KEY, ZDATE TIMESTAMP, ZPATH VARCHAR);\n"
                       "INSERT INTO ZCLOUDRECORDING VALUES (1, 'not a date', 'x.m4a');\n")
          .Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentRecording), Expected({{"", "", "00:00:00", "x.m4a", "", 0, false, false}}));
}

// A kind whose database is there answers an array, whatever it holds; NULL
// is for a backup without any.
TEST(CurrentRecordings, DamagedOrEmptyDatabasesAnswerAnEmptyArray) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddFile("MediaDomain", kOldDb, "not a database")
                                 .AddDatabase("MediaDomain", kCloudDb, "CREATE TABLE other (a);\n")
                                 .AddDatabase(kGroup, kGroupDb, Schema("CloudRecordings.db-ios14"))
                                 .Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentRecording), "[]");
  TempDir none;
  EXPECT_EQ(ServedBackup(BackupBuilder(IndexKind::ManifestDb).Write(none.Path() + "b"), Service::Current)
                .Answer(ContentRecording),
            "null");
}

}  // namespace
}  // namespace yhtest
