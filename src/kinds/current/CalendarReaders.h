#ifndef YH_KINDS_CURRENT_CALENDARREADERS_H
#define YH_KINDS_CURRENT_CALENDARREADERS_H

#include <vector>

#include "common/Database.h"
#include "kinds/current/CalendarEntry.h"

namespace current {

// The events, reminders and birthdays of a calendar database of any
// generation, whatever columns and tables it has.
std::vector<CalendarEntry> ReadCalendarDatabase(Database& database);

// The reminders of a Reminders app store (iOS 13 on), without those marked
// for deletion.
std::vector<CalendarEntry> ReadReminderStore(Database& database);

}  // namespace current

#endif
