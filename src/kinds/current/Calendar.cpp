#include "kinds/current/Calendar.h"

#include <string_view>

#include "common/PlistHelpers.h"
#include "kinds/LocalDatabase.h"
#include "kinds/current/CalendarReaders.h"

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

void Append(std::vector<CalendarEntry>& to, std::vector<CalendarEntry> from) {
  for (CalendarEntry& entry : from) to.push_back(std::move(entry));
}

void FillDict(const CalendarEntry& entry, plist_t dict) {
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
  }
}

}  // namespace

plist_t Calendar::Face::FindContent(void* device, int /*flag*/) {
  if (!owner_.read_) owner_.Read(static_cast<const BackupDevice*>(device));
  return owner_.Answer(reminders_);
}

// The calendar database first, then each store; every one in stored order.
void Calendar::Read(const BackupDevice* device) {
  read_ = true;
  for (const StoredFile& file : StoredFilesAt(device, kCalendarPath)) {
    Database database = OpenStoredDatabase(device, file);
    Append(entries_, ReadCalendarDatabase(database));
  }
  for (const StoredFile& file : FindStoredFiles(device, IsReminderStore)) {
    Database database = OpenStoredDatabase(device, file);
    Append(entries_, ReadReminderStore(database));
  }
}

plist_t Calendar::Answer(bool reminders) const {
  if (entries_.empty()) return nullptr;
  plist_t array = plist_new_array();
  for (const CalendarEntry& entry : entries_) {
    if (entry.reminder != reminders) continue;
    plist_t dict = plist_new_dict();
    FillDict(entry, dict);
    plist_array_append_item(array, dict);
  }
  return array;
}

}  // namespace current
