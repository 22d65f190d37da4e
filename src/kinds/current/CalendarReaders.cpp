#include "kinds/current/CalendarReaders.h"

#include <string>

#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/SchemaInfo.h"
#include "kinds/ReminderCalendars.h"

namespace current {
namespace {

// CalendarItem.entity_type of a reminder; events are 2.
const int64_t kTaskEntity = 3;
// The start_tz of a floating time (every all-day event): its date and hour
// are kept as if in UTC and mean the same clock reading in every zone.
const char kFloatingZone[] = "_float";

std::string Text(const Database::Statement& row, int column) { return GetEmptyStringIsNull(row.Text(column)); }

bool IsSet(const Database::Statement& row, int column) { return !row.IsNull(column) && row.Int64(column) != 0; }

std::string CalendarDate(const char* stored, const std::string& zone) {
  return zone == kFloatingZone ? FloatingDateText(stored, TimeBase::Since2001)
                               : LocalDateText(stored, TimeBase::Since2001);
}

}  // namespace

// Reminders are the tasks (entity type 3) of any list, and, as the described
// service has it, every entry of the birthday and reminder calendars. A
// task's date is its due date. A task is completed when it has a completion
// date; any other entry when its status is set, as the described service says.
std::vector<CalendarEntry> ReadCalendarDatabase(Database& database) {
  const SchemaInfo schema(database);
  std::vector<CalendarEntry> entries;
  if (!schema.HasTable("CalendarItem")) return entries;
  const bool hasLocation = schema.HasTable("Location") && schema.HasColumn("CalendarItem", "location_id");
  const bool hasCalendar = schema.HasTable("Calendar") && schema.HasColumn("CalendarItem", "calendar_id");
  std::string query =
      "select " +
      schema.SelectList("CalendarItem", {"summary", "description", "url", "start_date", "end_date", "start_tz",
                                         "all_day", "status", "entity_type", "due_date", "due_tz", "completion_date"},
                        "ci") +
      ", " + (hasLocation ? schema.ColumnOrNull("Location", "title", "l") : "NULL") + ", " +
      (hasCalendar ? schema.ColumnOrNull("Calendar", "title", "c") : "NULL") + " from CalendarItem ci";
  if (hasLocation) query += " left join Location l on l.ROWID = ci.location_id";
  if (hasCalendar) query += " left join Calendar c on c.ROWID = ci.calendar_id";
  query += " order by ci.ROWID";
  Database::Statement rows(database, query.c_str());
  while (rows.Step()) {
    CalendarEntry entry;
    const bool task = !rows.IsNull(8) && rows.Int64(8) == kTaskEntity;
    entry.reminder = task || IsReminderCalendar(rows.Text(13));
    entry.title = Text(rows, 0);
    entry.description = Text(rows, 1);
    entry.url = Text(rows, 2);
    entry.timeZone = Text(rows, 5);
    const bool due = task && !rows.IsNull(9);
    entry.startDate = due ? CalendarDate(rows.Text(9), Text(rows, 10)) : CalendarDate(rows.Text(3), entry.timeZone);
    entry.endDate = CalendarDate(rows.Text(4), entry.timeZone);
    entry.allDay = IsSet(rows, 6);
    entry.completed = task ? !rows.IsNull(11) : IsSet(rows, 7);
    if (task) entry.completionDate = LocalDateText(rows.Text(11), TimeBase::Since2001);
    entry.location = Text(rows, 12);
    entry.list = Text(rows, 13);
    entries.push_back(std::move(entry));
  }
  return entries;
}

// A reminder answers the described keys thus: its notes are the description,
// its due date the start date, its zone the area; it has no end date, and
// neither its location alarms nor its links (kept elsewhere in the store)
// are read.
std::vector<CalendarEntry> ReadReminderStore(Database& database) {
  const SchemaInfo schema(database);
  std::vector<CalendarEntry> entries;
  if (!schema.HasTable("ZREMCDREMINDER")) return entries;
  const bool hasList = schema.HasTable("ZREMCDBASELIST") && schema.HasColumn("ZREMCDREMINDER", "ZLIST");
  std::string query = "select " +
                      schema.SelectList("ZREMCDREMINDER", {"ZTITLE", "ZNOTES", "ZDUEDATE", "ZTIMEZONE", "ZALLDAY",
                                                           "ZCOMPLETED", "ZCOMPLETIONDATE"},
                                        "r") +
                      ", " + (hasList ? schema.ColumnOrNull("ZREMCDBASELIST", "ZNAME", "l") : "NULL") +
                      " from ZREMCDREMINDER r";
  if (hasList) query += " left join ZREMCDBASELIST l on l.Z_PK = r.ZLIST";
  if (schema.HasColumn("ZREMCDREMINDER", "ZMARKEDFORDELETION")) query += " where ifnull(r.ZMARKEDFORDELETION, 0) = 0";
  query += " order by r.ROWID";
  Database::Statement rows(database, query.c_str());
  while (rows.Step()) {
    CalendarEntry entry;
    entry.reminder = true;
    entry.title = Text(rows, 0);
    entry.description = Text(rows, 1);
    entry.startDate = LocalDateText(rows.Text(2), TimeBase::Since2001);
    entry.timeZone = Text(rows, 3);
    entry.allDay = IsSet(rows, 4);
    entry.completed = IsSet(rows, 5);
    entry.completionDate = LocalDateText(rows.Text(6), TimeBase::Since2001);
    entry.list = Text(rows, 7);
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace current
