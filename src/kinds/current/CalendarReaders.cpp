#include "kinds/current/CalendarReaders.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/SchemaInfo.h"
#include "kinds/ReminderCalendars.h"
#include "kinds/current/CalendarPeople.h"

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
  const auto location = [&](const char* column) {
    return (hasLocation ? schema.ColumnOrNull("Location", column, "l") : std::string("NULL")) + " AS " + column;
  };
  const CalendarPeople people(schema);
  const CalendarPeople::Query organizer = people.Organizer("ci");
  std::string query =
      "select ci.ROWID AS item_id, " +
      schema.SelectList("CalendarItem", {"summary", "description", "url", "start_date", "end_date", "start_tz",
                                         "all_day", "status", "entity_type", "due_date", "due_tz", "completion_date"},
                        "ci") +
      ", " + (hasLocation ? schema.ColumnOrNull("Location", "title", "l") : "NULL") + " AS location, " +
      location("latitude") + ", " + location("longitude") + ", " + organizer.columns + ", " +
      (hasCalendar ? schema.ColumnOrNull("Calendar", "title", "c") : "NULL") + " AS list from CalendarItem ci";
  if (hasLocation) query += " left join Location l on l.ROWID = ci.location_id";
  if (hasCalendar) query += " left join Calendar c on c.ROWID = ci.calendar_id";
  query += organizer.joins + " order by ci.ROWID";
  std::map<int64_t, std::vector<CalendarPerson>> invitees = people.Invitees(database);
  Database::Statement rows(database, query.c_str());
  const int summary = rows.Column("summary");
  const int description = rows.Column("description");
  const int url = rows.Column("url");
  const int start = rows.Column("start_date");
  const int end = rows.Column("end_date");
  const int startZone = rows.Column("start_tz");
  const int allDay = rows.Column("all_day");
  const int status = rows.Column("status");
  const int entityType = rows.Column("entity_type");
  const int dueDate = rows.Column("due_date");
  const int dueZone = rows.Column("due_tz");
  const int completion = rows.Column("completion_date");
  const int place = rows.Column("location");
  const int latitude = rows.Column("latitude");
  const int longitude = rows.Column("longitude");
  const CalendarPersonColumns organizerColumns(rows, "organizer_");
  const int item = rows.Column("item_id");
  const int list = rows.Column("list");
  while (rows.Step()) {
    CalendarEntry entry;
    const bool task = !rows.IsNull(entityType) && rows.Int64(entityType) == kTaskEntity;
    entry.reminder = task || IsReminderCalendar(rows.Text(list));
    entry.title = Text(rows, summary);
    entry.description = Text(rows, description);
    entry.url = Text(rows, url);
    entry.timeZone = Text(rows, startZone);
    const bool due = task && !rows.IsNull(dueDate);
    entry.startDate =
        due ? CalendarDate(rows.Text(dueDate), Text(rows, dueZone)) : CalendarDate(rows.Text(start), entry.timeZone);
    entry.endDate = CalendarDate(rows.Text(end), entry.timeZone);
    entry.allDay = IsSet(rows, allDay);
    entry.completed = task ? !rows.IsNull(completion) : IsSet(rows, status);
    if (task) entry.completionDate = LocalDateText(rows.Text(completion), TimeBase::Since2001);
    entry.location = Text(rows, place);
    entry.list = Text(rows, list);
    entry.organizer = organizerColumns.PersonAt(rows);
    const auto invited = invitees.find(rows.Int64(item));
    if (invited != invitees.end()) entry.invitees = std::move(invited->second);
    // A place is somewhere only with both coordinates.
    entry.latitude = FiniteRealOf(rows.Text(latitude));
    entry.longitude = FiniteRealOf(rows.Text(longitude));
    if (!entry.latitude || !entry.longitude) entry.latitude = entry.longitude = std::nullopt;
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
                      " AS list from ZREMCDREMINDER r";
  if (hasList) query += " left join ZREMCDBASELIST l on l.Z_PK = r.ZLIST";
  if (schema.HasColumn("ZREMCDREMINDER", "ZMARKEDFORDELETION")) query += " where ifnull(r.ZMARKEDFORDELETION, 0) = 0";
  query += " order by r.ROWID";
  Database::Statement rows(database, query.c_str());
  const int title = rows.Column("ZTITLE");
  const int notes = rows.Column("ZNOTES");
  const int dueDate = rows.Column("ZDUEDATE");
  const int zone = rows.Column("ZTIMEZONE");
  const int allDay = rows.Column("ZALLDAY");
  const int completed = rows.Column("ZCOMPLETED");
  const int completion = rows.Column("ZCOMPLETIONDATE");
  const int list = rows.Column("list");
  while (rows.Step()) {
    CalendarEntry entry;
    entry.reminder = true;
    entry.title = Text(rows, title);
    entry.description = Text(rows, notes);
    entry.startDate = LocalDateText(rows.Text(dueDate), TimeBase::Since2001);
    entry.timeZone = Text(rows, zone);
    entry.allDay = IsSet(rows, allDay);
    entry.completed = IsSet(rows, completed);
    entry.completionDate = LocalDateText(rows.Text(completion), TimeBase::Since2001);
    entry.list = Text(rows, list);
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace current
