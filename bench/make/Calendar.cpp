#include "Generation.h"
#include "Sql.h"

namespace bench {
namespace {

// Events of ordinary calendars, and the reminders and birthdays of the system's.
const char* const kCalendars[] = {"Home", "Work", "Family", "Birthdays", "Reminders", "DEFAULT_TASK_CALENDAR_NAME"};
const size_t kCalendarCount = sizeof kCalendars / sizeof *kCalendars;
const size_t kLocations = 200;

}  // namespace

void AddCalendar(Generation& generation) {
  Random& random = generation.random;
  SqlScript sql(generation.Newer() ? "Calendar.sqlitedb-ios18" : "Calendar.sqlitedb-ios7");
  sql.Insert("Store", "ROWID, name, type", "1, 'Default', 0");
  for (size_t i = 0; i < kCalendarCount; ++i) {
    sql.Insert("Calendar", "ROWID, store_id, title", std::to_string(i + 1) + ", 1, " + Quote(kCalendars[i]));
  }
  for (size_t i = 1; i <= kLocations; ++i) {
    sql.Insert("Location", "ROWID, title", std::to_string(i) + ", " + Quote(random.Words(2)));
  }
  for (size_t item = 1; item <= generation.counts.calendarItems; ++item) {
    const int64_t start = DeviceTime(random);
    const bool allDay = random.Chance(0.2);
    sql.Insert("CalendarItem",
               "ROWID, summary, location_id, description, url, start_date, end_date, start_tz, all_day, status, "
               "calendar_id",
               std::to_string(item) + ", " + Quote(random.Words(1 + random.Below(4))) + ", " +
                   (random.Chance(0.3) ? std::to_string(1 + random.Below(kLocations)) : "NULL") + ", " +
                   (random.Chance(0.2) ? Quote(random.Words(10)) : "NULL") + ", " +
                   (random.Chance(0.05) ? Quote("https://" + random.Word() + ".example.com/") : "NULL") + ", " +
                   std::to_string(start) + ", " + std::to_string(start + (allDay ? 86400 : 3600)) + ", " +
                   (allDay ? "'_float'" : "'Europe/London'") + ", " + (allDay ? "1" : "0") + ", " +
                   std::to_string(random.Below(2)) + ", " + std::to_string(1 + random.Skewed(kCalendarCount)));
  }
  generation.rows.Database("HomeDomain", "Library/Calendar/Calendar.sqlitedb", sql.Text());
}

}  // namespace bench
