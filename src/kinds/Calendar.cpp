#include "kinds/Calendar.h"

#include <cstring>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/PlistHelpers.h"
#include "kinds/ColumnDate.h"
#include "kinds/ReminderCalendars.h"
#include "kinds/SourceFiles.h"

namespace {

const char kCalendarItemQuery[] =
    "select c.title,ci.summary as title,l.title as location,ci.description,ci.url,ci.start_date,"
    "ci.end_date,ci.start_tz,ci.all_day,ci.status from CalendarItem ci left join Location l  on "
    "ci.location_id = l.ROWID left join Calendar c on c.ROWID = ci.calendar_id";
const char kEventQuery[] =
    "select c.title as type, e.summary as title,e.location,e.description,e.url,e.start_date,"
    "e.end_date,e.start_tz,e.all_day,e.status from Calendar c, Event e where c.rowid = e.calendar_id";

const SourcePaths kCalendarSource{"Library/Calendar/Calendar.sqlitedb", "Library/Calendar/Calendar.sqlitedb"};

// An integer flag column: set when it holds anything but nothing or "0".
bool IsSet(const char* value) { return value && *value && std::strcmp(value, "0") != 0; }

int RecordingDbCallback(void* context, int, char** values, char**) {
  auto* records = static_cast<std::vector<CalendarItem*>*>(context);
  auto* item = new CalendarItem;
  item->type = IsReminderCalendar(values[0]) ? 0 : 1;
  item->title = GetEmptyStringIsNull(values[1]);
  item->location = GetEmptyStringIsNull(values[2]);
  item->description = GetEmptyStringIsNull(values[3]);
  item->url = GetEmptyStringIsNull(values[4]);
  item->startDate = DateText2001OrNow(values[5]);
  item->endDate = DateText2001OrNow(values[6]);
  item->area = GetEmptyStringIsNull(values[7]);
  item->allDay = IsSet(values[8]) ? "YES" : "NO";
  item->status = IsSet(values[9]) ? "Completed" : "Uncompleted";
  records->push_back(item);
  return 0;
}

}  // namespace

void Calendar::ReadBackup(BackupDevice* device) {
  for (const std::string& path : SourceFiles(device, kCalendarSource)) AddCalendarList(path);
}

bool Calendar::Selects(const CalendarItem& item, int type) const { return item.type == type; }

void Calendar::FillDict(const CalendarItem& item, plist_t dict) const {
  InsertPlistDictString(dict, "title", item.title.c_str());
  plist_dict_set_item(dict, "type", plist_new_uint(static_cast<uint64_t>(item.type)));
  InsertPlistDictString(dict, "location", item.location.c_str());
  InsertPlistDictString(dict, "description", item.description.c_str());
  InsertPlistDictString(dict, "url", item.url.c_str());
  InsertPlistDictString(dict, "start_date", item.startDate.c_str());
  InsertPlistDictString(dict, "end_date", item.endDate.c_str());
  InsertPlistDictString(dict, "area", item.area.c_str());
  InsertPlistDictString(dict, "all_day", item.allDay.c_str());
  InsertPlistDictString(dict, "status", item.status.c_str());
}

void Calendar::AddCalendarList(const std::string& path) {
  Database db(path);
  if (!db.IsOpen()) return;
  // Newer devices keep entries in CalendarItem; older ones in Event.
  if (QueryCalendarItem(db) != 0) QueryCalenderEvent(db);
}

int Calendar::QueryCalendarItem(Database& db) {
  return db.Exec(kCalendarItemQuery, RecordingDbCallback, &records_) ? 0 : -1;
}

int Calendar::QueryCalenderEvent(Database& db) {
  return db.Exec(kEventQuery, RecordingDbCallback, &records_) ? 0 : -1;
}
