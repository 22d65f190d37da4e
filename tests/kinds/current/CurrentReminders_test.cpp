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
const char kDomain[] = "AppDomainGroup-group.com.apple.reminders";
const char kFirstStore[] = "Container_v1/Stores/Data-6C1E2F4A-0B1D-4E7C-9A55-0D2B8E6F1A11.sqlite";
const char kSecondStore[] = "Container_v1/Stores/Data-F0E1D2C3-B4A5-4968-8776-655443322110.sqlite";

struct Reminder {
  std::string title, notes, due, zone, allDay;
  bool completed;
  std::string completionDate, list;
};

std::string Expected(const std::vector<Reminder>& reminders) {
  std::string text = "[";
  for (const Reminder& r : reminders) {
    if (text.size() > 1) text += ",";
    text += "{\"title\":\"" + r.title + "\",\"type\":0u,\"location\":\"\",\"description\":\"" + r.notes +
            "\",\"url\":\"\",\"start_date\":\"" + r.due + "\",\"end_date\":\"\",\"area\":\"" + r.zone +
            "\",\"all_day\":\"" + r.allDay + "\",\"status\":\"" + (r.completed ? "Completed" : "Uncompleted") +
            "\",\"completed\":" + (r.completed ? "true" : "false") + ",\"completion_date\":\"" + r.completionDate +
            "\",\"list\":\"" + r.list + "\"}";
  }
  return text + "]";
}

// Two lists; a reminder due in summer, a completed one, one marked for
// deletion and one due in 2040.
const char kFirstRows[] =
    "INSERT INTO ZREMCDBASELIST (Z_PK, ZNAME, ZMARKEDFORDELETION) VALUES (1, 'Home', 0), (2, 'Work', 0);\n"
    "INSERT INTO ZREMCDREMINDER (Z_PK, ZTITLE, ZNOTES, ZDUEDATE, ZTIMEZONE, ZALLDAY, ZCOMPLETED, ZCOMPLETIONDATE, "
    "ZLIST, ZMARKEDFORDELETION) VALUES "
    "(1, 'Buy milk', 'Semi-skimmed', 583675200, 'America/New_York', 0, 0, NULL, 1, 0), "
    "(2, 'File report', NULL, NULL, NULL, 0, 1, 600000000, 2, 0), "
    "(3, 'Gone', NULL, 583675200, NULL, 0, 0, NULL, 1, 1), "
    "(4, 'Renew passport', NULL, 1235908800, NULL, 1, 0, NULL, 2, 0);\n";

std::string WriteReminderBackup(const TempDir& root, IndexKind kind) {
  const std::string schema = Schema("RemindersData.sqlite-macos26");
  return BackupBuilder(kind)
      .AddDatabase(kDomain, kFirstStore, schema + kFirstRows)
      .AddDatabaseWithWal(kDomain, kSecondStore,
                          schema + "INSERT INTO ZREMCDBASELIST (Z_PK, ZNAME) VALUES (1, 'Shared');\n",
                          "INSERT INTO ZREMCDREMINDER (Z_PK, ZTITLE, ZLIST) VALUES (1, 'Call Ada', 1);\n")
      .Write(root.Path() + "b");
}

TEST(CurrentReminders, EveryStoreWithItsListsWithoutDeletedReminders) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = WriteReminderBackup(root, kind);
    for (const auto& [zone, summer, winter, later] :
         {std::tuple<const char*, const char*, const char*, const char*>{"UTC", "2019-07-01 12:00:00",
                                                                         "2020-01-06 10:40:00", "2040-03-01 12:00:00"},
          {"America/New_York", "2019-07-01 08:00:00", "2020-01-06 05:40:00", "2040-03-01 07:00:00"}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      EXPECT_EQ(served.Answer(ContentCalendarReminder),
                Expected({
                    {"Buy milk", "Semi-skimmed", summer, "America/New_York", "NO", false, "", "Home"},
                    {"File report", "", "", "", "NO", true, winter, "Work"},
                    {"Renew passport", "", later, "", "YES", false, "", "Work"},
                    {"Call Ada", "", "", "", "NO", false, "", "Shared"},
                }))
          << zone;
      EXPECT_EQ(served.Answer(ContentCalendarEvent), "[]") << zone;
    }
  }
}

TEST(CurrentReminders, OnlyTheStoresOfTheRemindersDomainAreRead) {
  TempDir root;
  const std::string sql = Schema("RemindersData.sqlite-macos26") + kFirstRows;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabase("AppDomainGroup-group.com.example.todo", kFirstStore, sql)
                                 .AddDatabase(kDomain, "Container_v1/Stores/Other.sqlite", sql)
                                 .Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentCalendarReminder), "null");
}

TEST(CurrentReminders, AStoreWithoutListsOrDeletionMarksStillLists) {
  TempDir root;
  const std::string store =
      "CREATE TABLE ZREMCDREMINDER (Z_PK INTEGER PRIMARY KEY, ZTITLE VARCHAR, ZCOMPLETED INTEGER);\n"
      "INSERT INTO ZREMCDREMINDER VALUES (1, 'Water plants', 0);\n";
  ScopedTimeZone utc("UTC");
  ServedBackup served(
      BackupBuilder(IndexKind::Mbdb).AddDatabase(kDomain, kFirstStore, store).Write(root.Path() + "b"),
      Service::Current);
  EXPECT_EQ(served.Answer(ContentCalendarReminder), Expected({{"Water plants", "", "", "", "NO", false, "", ""}}));
}

TEST(CurrentReminders, TheDescribedServiceDoesNotReadTheStores) {
  TempDir root;
  const std::string backup = WriteReminderBackup(root, IndexKind::ManifestDb);
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(described.Answer(ContentCalendarReminder), "null");
}

}  // namespace
}  // namespace yhtest
