#ifndef YH_KINDS_CURRENT_CALENDARENTRY_H
#define YH_KINDS_CURRENT_CALENDARENTRY_H

#include <string>

namespace current {

// One event, reminder or birthday, with its dates already as local texts.
struct CalendarEntry {
  bool reminder = false;  // answered as a reminder (type 7) rather than an event (type 6)
  std::string title;
  std::string location;
  std::string description;
  std::string url;
  std::string startDate;
  std::string endDate;
  std::string timeZone;
  bool allDay = false;
  bool completed = false;
  std::string completionDate;
  std::string list;  // the calendar or reminders list it belongs to
};

}  // namespace current

#endif
