#include "kinds/current/Calendar.h"

#include <string_view>

#include "common/PlistHelpers.h"
#include "kinds/current/CalendarReaders.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char kCalendarPath[] = "Library/Calendar/Calendar.sqlitedb";
const char kReminderDomain[] = "AppDomainGroup-group.com.apple.reminders";
const char kStorePrefix[] = "Container_v1/Stores/Data-";
const char kStoreSuffix[] = ".sqlite";

bool IsReminderStore(std::string_view domain, std::string_view path) {
  const std::string_view prefix = kStorePrefix;
  const std::string_view suffix = kStoreSuffix;
  return domain == kReminderDomain && path.size() > prefix.size() + suffix.size() &&
         path.compare(0, prefix.size(), prefix) == 0 &&
         path.compare(path.size() - suffix.size(), suffix.size(), suffix) == 0;
}

plist_t PersonDict(const CalendarPerson& person) {
  plist_t dict = plist_new_dict();
  InsertPlistDictString(dict, "name", person.name.c_str());
  InsertPlistDictString(dict, "address", person.address.c_str());
  return dict;
}

}  // namespace

std::vector<CalendarEntry> Calendar::Read(const BackupDevice* device) {
  std::vector<CalendarEntry> entries =
      ReadOwnDatabases(device, StoredFilesAt(device, kCalendarPath), ReadCalendarDatabase);
  AppendMoving(entries, ReadOwnDatabases(device, FindStoredFiles(device, IsReminderStore), ReadReminderStore));
  return entries;
}

bool Calendar::Selects(const CalendarEntry& entry, int flag) const { return entry.reminder == (flag == kReminders); }

void Calendar::InsertKeys(const CalendarEntry& entry, plist_t dict) const {
  InsertPlistDictString(dict, "title", entry.title.c_str());
  plist_dict_set_item(dict, "type", plist_new_uint(entry.reminder ? 0 : 1));
  InsertPlistDictString(dict, "location", entry.location.c_str());
  InsertPlistDictString(dict, "description", entry.description.c_str());
  InsertPlistDictString(dict, "url", entry.url.c_str());
  InsertPlistDictString(dict, "start_date", entry.startDate.c_str());
  InsertPlistDictString(dict, "end_date", entry.endDate.c_str());
  InsertPlistDictString(dict, "area", entry.timeZone.c_str());
  InsertPlistDictString(dict, "all_day", entry.allDay ? "YES" : "NO");
  InsertPlistDictString(dict, "status", entry.completed ? "Completed" : "Uncompleted");
  if (entry.reminder) {
    plist_dict_set_item(dict, "completed", plist_new_bool(entry.completed));
    InsertPlistDictString(dict, "completion_date", entry.completionDate.c_str());
    InsertPlistDictString(dict, "list", entry.list.c_str());
  } else {
    InsertPlistDictString(dict, "time_zone", entry.timeZone.c_str());
    InsertPlistDictString(dict, "calendar", entry.list.c_str());
    plist_dict_set_item(dict, "organizer", PersonDict(entry.organizer));
    plist_t invitees = plist_new_array();
    for (const CalendarPerson& invitee : entry.invitees) plist_array_append_item(invitees, PersonDict(invitee));
    plist_dict_set_item(dict, "invitees", invitees);
    if (entry.latitude && entry.longitude) {
      plist_dict_set_item(dict, "latitude", plist_new_real(*entry.latitude));
      plist_dict_set_item(dict, "longitude", plist_new_real(*entry.longitude));
    }
  }
}

}  // namespace current
