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
const char kCalendarPath[] = "Library/Calendar/Calendar.sqlitedb";

// The keys of an event without an organizer, invitees or coordinates.
const char kNoPeople[] = ",\"organizer\":{\"name\":\"\",\"address\":\"\"},\"invitees\":[]";

struct Event {
  std::string title, location, description, url, start, end, zone, allDay, status;
  std::string calendar = "Home";
  // The keys after "calendar", as dumped.
  std::string people = kNoPeople;
};

std::string Expected(const std::vector<Event>& events) {
  std::string text = "[";
  for (const Event& e : events) {
    if (text.size() > 1) text += ",";
    text += "{\"title\":\"" + e.title + "\",\"type\":1u,\"location\":\"" + e.location + "\",\"description\":\"" +
            e.description + "\",\"url\":\"" + e.url + "\",\"start_date\":\"" + e.start + "\",\"end_date\":\"" + e.end +
            "\",\"area\":\"" + e.zone + "\",\"all_day\":\"" + e.allDay + "\",\"status\":\"" + e.status +
            "\",\"time_zone\":\"" + e.zone + "\",\"calendar\":\"" + e.calendar + "\"" + e.people + "}";
  }
  return text + "]";
}

// iOS 18 events: a timed summer event at a place, an all-day (floating)
// event, one in 2040 without an end, a winter event whose status is set,
// and a birthday, which is answered with the reminders.
const char kEvents[] =
    "INSERT INTO Calendar (ROWID, title) VALUES (1, 'Home'), (2, 'Birthdays');\n"
    "INSERT INTO Location (ROWID, title) VALUES (1, 'Office');\n"
    "INSERT INTO CalendarItem (ROWID, summary, description, url, start_date, start_tz, end_date, all_day, "
    "calendar_id, location_id, status, entity_type) VALUES "
    "(1, 'Standup', 'Daily', 'https://example.org/m', 583675200, 'America/New_York', 583677000, 0, 1, 1, 0, 2), "
    "(2, 'Holiday', NULL, NULL, 426124800, '_float', 426211200, 1, 1, NULL, 0, 2), "
    "(3, 'Launch', NULL, NULL, 1235908800, 'UTC', NULL, 0, 1, NULL, 0, 2), "
    "(4, 'Ada', NULL, NULL, 426124800, '_float', 426211200, 1, 2, NULL, 0, 2), "
    "(5, 'Review', NULL, NULL, 600000000, 'Europe/Paris', 600003600, 0, 1, NULL, 1, 2);\n";

std::vector<Event> ExpectedEvents(bool newYork) {
  const std::string summer = newYork ? "2019-07-01 08:" : "2019-07-01 12:";
  const std::string winter = newYork ? "2020-01-06 0" : "2020-01-06 1";
  return {
      {"Standup", "Office", "Daily", "https://example.org/m", summer + "00:00", summer + "30:00", "America/New_York",
       "NO", "Uncompleted"},
      {"Holiday", "", "", "", "2014-07-04 00:00:00", "2014-07-05 00:00:00", "_float", "YES", "Uncompleted"},
      {"Launch", "", "", "", newYork ? "2040-03-01 07:00:00" : "2040-03-01 12:00:00", "", "UTC", "NO", "Uncompleted"},
      {"Review", "", "", "", winter + (newYork ? "5:40:00" : "0:40:00"), winter + (newYork ? "6:40:00" : "1:40:00"),
       "Europe/Paris", "NO", "Completed"},
  };
}

const char kBirthday[] =
    "[{\"title\":\"Ada\",\"type\":0u,\"location\":\"\",\"description\":\"\",\"url\":\"\","
    "\"start_date\":\"2014-07-04 00:00:00\",\"end_date\":\"2014-07-05 00:00:00\",\"area\":\"_float\","
    "\"all_day\":\"YES\",\"status\":\"Uncompleted\",\"completed\":false,\"completion_date\":\"\","
    "\"list\":\"Birthdays\"}]";

TEST(CurrentCalendar, EventsWithTrueDatesFloatingAllDayDatesAndNoEndInEitherZone) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = BackupBuilder(kind)
                                   .AddDatabase("HomeDomain", kCalendarPath, Schema("Calendar.sqlitedb-ios18") + kEvents)
                                   .Write(root.Path() + "b");
    for (const char* zone : {"UTC", "America/New_York"}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      ASSERT_TRUE(served.Analysed());
      EXPECT_EQ(served.Answer(ContentCalendarEvent), Expected(ExpectedEvents(std::string(zone) != "UTC"))) << zone;
      EXPECT_EQ(served.Answer(ContentCalendarReminder), kBirthday) << zone;
    }
  }
}

// A lecture organised by Mary, to which Charles (named by his identity's
// first and last names), Alan (known only by his identity's address) and Ada
// (an address without an identity) are invited, at a place with
// coordinates; and an event of no calendar, without people or place.
const char kPeopleAndPlaces[] =
    "INSERT INTO Calendar (ROWID, title) VALUES (1, 'Work');\n"
    "INSERT INTO Location (ROWID, title, latitude, longitude) VALUES (1, 'Royal Institution', 51.5099, -0.1425);\n"
    "INSERT INTO Identity (ROWID, display_name, address, first_name, last_name) VALUES "
    "(1, 'Mary Somerville', 'mailto:mary@example.org', NULL, NULL), "
    "(2, NULL, 'mailto:charles@example.org', 'Charles', 'Babbage'), "
    "(3, NULL, 'mailto:alan@example.org', NULL, NULL);\n"
    "INSERT INTO Participant (ROWID, entity_type, identity_id, owner_id, email) VALUES "
    "(10, 8, 1, 1, 'mary@example.org'), (11, 7, 2, 1, 'charles@example.org'), (12, 7, 3, 1, NULL), "
    "(13, 7, NULL, 1, 'ada@example.org'), (14, 7, 1, 2, NULL);\n"
    "INSERT INTO CalendarItem (ROWID, summary, start_date, start_tz, end_date, calendar_id, location_id, "
    "organizer_id, entity_type) VALUES "
    "(1, 'Lecture', 583675200, 'Europe/London', 583678800, 1, 1, 10, 2), "
    "(2, 'Tea', 600000000, 'Europe/London', 600003600, NULL, NULL, NULL, 2);\n";

TEST(CurrentCalendar, AnEventsCalendarOrganizerInviteesAndCoordinates) {
  const std::string lecturePeople =
      ",\"organizer\":{\"name\":\"Mary Somerville\",\"address\":\"mary@example.org\"},"
      "\"invitees\":[{\"name\":\"Charles Babbage\",\"address\":\"charles@example.org\"},"
      "{\"name\":\"\",\"address\":\"alan@example.org\"},{\"name\":\"\",\"address\":\"ada@example.org\"}],"
      "\"latitude\":51.5099r,\"longitude\":-0.1425r";
  const std::string teaPeople =
      ",\"organizer\":{\"name\":\"\",\"address\":\"\"},"
      "\"invitees\":[{\"name\":\"Mary Somerville\",\"address\":\"mary@example.org\"}]";
  for (const char* schema : {"Calendar.sqlitedb-ios18", "Calendar.sqlitedb-ios7"}) {
    TempDir root;
    const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                   .AddDatabase("HomeDomain", kCalendarPath, Schema(schema) + kPeopleAndPlaces)
                                   .Write(root.Path() + "b");
    // Berlin is two hours ahead in July and one in January.
    for (const char* zone : {"UTC", "Europe/Berlin"}) {
      const bool utc = std::string(zone) == "UTC";
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      EXPECT_EQ(served.Answer(ContentCalendarEvent),
                Expected({{"Lecture", "Royal Institution", "", "", utc ? "2019-07-01 12:00:00" : "2019-07-01 14:00:00",
                           utc ? "2019-07-01 13:00:00" : "2019-07-01 15:00:00", "Europe/London", "NO", "Uncompleted",
                           "Work", lecturePeople},
                          {"Tea", "", "", "", utc ? "2020-01-06 10:40:00" : "2020-01-06 11:40:00",
                           utc ? "2020-01-06 11:40:00" : "2020-01-06 12:40:00", "Europe/London", "NO", "Uncompleted",
                           "", teaPeople}}))
          << schema << " " << zone;
    }
  }
}

// The current events answer, in UTC, of a backup whose calendar database is `sql`.
std::string EventsInUtc(const std::string& sql, IndexKind kind) {
  TempDir root;
  const std::string backup = BackupBuilder(kind).AddDatabase("HomeDomain", kCalendarPath, sql).Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  return ServedBackup(backup, Service::Current).Answer(ContentCalendarEvent);
}

// The answer of one half-hour call of no calendar in UTC, with these keys after "calendar".
std::string CallWith(const std::string& people) {
  return Expected(
      {{"Call", "", "", "", "2019-07-01 12:00:00", "2019-07-01 12:30:00", "UTC", "NO", "Uncompleted", "", people}});
}

// iOS 18 names some participants by their phone number alone; an identity
// without a display name or names gives none.
TEST(CurrentCalendar, AnInviteeKnownByPhoneNumberOnly) {
  const std::string sql = Schema("Calendar.sqlitedb-ios18") +
                          "INSERT INTO Identity (ROWID, address) VALUES (1, 'tel:+16175550199');\n"
                          "INSERT INTO Participant (ROWID, entity_type, identity_id, owner_id, phone_number) VALUES "
                          "(1, 7, NULL, 1, '+44 20 7946 0018'), (2, 7, 1, 1, NULL), (3, 7, 7, 1, NULL);\n"
                          "INSERT INTO CalendarItem (ROWID, summary, start_date, start_tz, end_date, entity_type) "
                          "VALUES (1, 'Call', 583675200, 'UTC', 583677000, 2);\n";
  EXPECT_EQ(EventsInUtc(sql, IndexKind::Mbdb),
            CallWith(",\"organizer\":{\"name\":\"\",\"address\":\"\"},\"invitees\":["
                     "{\"name\":\"\",\"address\":\"+44 20 7946 0018\"},{\"name\":\"\",\"address\":\"+16175550199\"},"
                     "{\"name\":\"\",\"address\":\"\"}]"));
}

// Some trimmed databases keep participants without their Identity table.
TEST(CurrentCalendar, ParticipantsWithoutTheIdentityTableKeepTheirAddresses) {
  const std::string sql = Schema("Calendar.sqlitedb-ios7") +
                          "DROP TABLE Identity;\n"
                          "INSERT INTO Participant (ROWID, entity_type, identity_id, owner_id, email) VALUES "
                          "(1, 8, 1, 1, 'mary@example.org'), (2, 7, 2, 1, 'charles@example.org');\n"
                          "INSERT INTO CalendarItem (ROWID, summary, start_date, start_tz, end_date, organizer_id, "
                          "entity_type) VALUES (1, 'Call', 583675200, 'UTC', 583677000, 1, 2);\n";
  EXPECT_EQ(EventsInUtc(sql, IndexKind::ManifestDb),
            CallWith(",\"organizer\":{\"name\":\"\",\"address\":\"mary@example.org\"},"
                     "\"invitees\":[{\"name\":\"\",\"address\":\"charles@example.org\"}]"));
}

TEST(CurrentCalendar, ADatabaseWithoutItsLocationTableStillListsItsEvents) {
  TempDir root;
  const std::string sql = Schema("Calendar.sqlitedb-ios18") +
                          "DROP TABLE Location;\n"
                          "INSERT INTO Calendar (ROWID, title) VALUES (1, 'Home');\n"
                          "INSERT INTO CalendarItem (ROWID, summary, start_date, start_tz, end_date, calendar_id, "
                          "location_id, entity_type) VALUES (1, 'Dentist', 583675200, 'UTC', 583677000, 1, 1, 2);\n";
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kCalendarPath, sql).Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentCalendarEvent),
            Expected({{"Dentist", "", "", "", "2019-07-01 12:00:00", "2019-07-01 12:30:00", "UTC", "NO", "Uncompleted"}}));
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(described.Answer(ContentCalendarEvent), "null");
}

TEST(CurrentCalendar, EventsKeptOnlyInTheWalAreListed) {
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb)
          .AddDatabaseWithWal("HomeDomain", kCalendarPath,
                              Schema("Calendar.sqlitedb-ios18") + "INSERT INTO Calendar (ROWID, title) VALUES (1, 'Home');\n",
                              "INSERT INTO CalendarItem (ROWID, summary, start_date, start_tz, end_date, calendar_id, "
                              "entity_type) VALUES (1, 'Late', 600000000, 'UTC', 600003600, 1, 2);\n")
          .Write(root.Path() + "b");
  ScopedTimeZone newYork("America/New_York");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentCalendarEvent),
            Expected({{"Late", "", "", "", "2020-01-06 05:40:00", "2020-01-06 06:40:00", "UTC", "NO", "Uncompleted"}}));
}

// iOS 7 keeps reminders in the calendar database as tasks, in lists of any
// name; a task's date is its due date and it is done when it has a completion date.
const char kTasks[] =
    "INSERT INTO Calendar (ROWID, title) VALUES (1, 'Groceries'), (2, 'Work');\n"
    "INSERT INTO CalendarItem (ROWID, summary, description, start_date, start_tz, end_date, all_day, calendar_id, "
    "status, entity_type, due_date, due_tz, completion_date) VALUES "
    "(1, 'Milk', '2 litres', NULL, NULL, NULL, 0, 1, 0, 3, 583675200, 'America/New_York', NULL), "
    "(2, 'Bread', NULL, NULL, NULL, NULL, 0, 1, 0, 3, NULL, NULL, 600000000), "
    "(3, 'Meeting', NULL, 600000000, 'Europe/London', 600003600, 0, 2, 0, 2, NULL, NULL, NULL);\n";

TEST(CurrentCalendar, TasksOfTheCalendarDatabaseAreReminders) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const std::string backup = BackupBuilder(kind)
                                   .AddDatabase("HomeDomain", kCalendarPath, Schema("Calendar.sqlitedb-ios7") + kTasks)
                                   .Write(root.Path() + "b");
    for (const auto& [zone, summer, winter] :
         {std::tuple<const char*, const char*, const char*>{"UTC", "2019-07-01 12:00:00", "2020-01-06 10:40:00"},
          {"America/New_York", "2019-07-01 08:00:00", "2020-01-06 05:40:00"}}) {
      ScopedTimeZone timeZone(zone);
      ServedBackup served(backup, Service::Current);
      EXPECT_EQ(served.Answer(ContentCalendarReminder),
                std::string("[{\"title\":\"Milk\",\"type\":0u,\"location\":\"\",\"description\":\"2 litres\","
                            "\"url\":\"\",\"start_date\":\"") +
                    summer +
                    "\",\"end_date\":\"\",\"area\":\"\",\"all_day\":\"NO\",\"status\":\"Uncompleted\","
                    "\"completed\":false,\"completion_date\":\"\",\"list\":\"Groceries\"},"
                    "{\"title\":\"Bread\",\"type\":0u,\"location\":\"\",\"description\":\"\",\"url\":\"\","
                    "\"start_date\":\"\",\"end_date\":\"\",\"area\":\"\",\"all_day\":\"NO\",\"status\":\"Completed\","
                    "\"completed\":true,\"completion_date\":\"" +
                    winter + "\",\"list\":\"Groceries\"}]")
          << zone;
      const std::string events = served.Answer(ContentCalendarEvent);
      EXPECT_NE(events.find("\"title\":\"Meeting\""), std::string::npos);
      EXPECT_EQ(events.find("Milk"), std::string::npos);
    }
  }
}

TEST(CurrentCalendar, TheDescribedServiceStillFilesTasksByTheirCalendarsTitle) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::Mbdb)
                                 .AddDatabase("HomeDomain", kCalendarPath, Schema("Calendar.sqlitedb-ios7") + kTasks)
                                 .Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(described.Answer(ContentCalendarReminder), "[]");
  const std::string events = described.Answer(ContentCalendarEvent);
  EXPECT_NE(events.find("\"title\":\"Milk\""), std::string::npos);
  EXPECT_EQ(events.find("time_zone"), std::string::npos);
}

TEST(CurrentCalendar, ABackupWithoutCalendarsAnswersNull) {
  TempDir root;
  ServedBackup served(BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "b"), Service::Current);
  EXPECT_EQ(served.Answer(ContentCalendarEvent), "null");
  EXPECT_EQ(served.Answer(ContentCalendarReminder), "null");
}

}  // namespace
}  // namespace yhtest
