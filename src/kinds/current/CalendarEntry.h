#ifndef YH_KINDS_CURRENT_CALENDARENTRY_H
#define YH_KINDS_CURRENT_CALENDARENTRY_H

#include <optional>
#include <string>
#include <vector>

namespace current {

// Someone an event names: the organizer or an invitee.
struct CalendarPerson {
  std::string name;
  std::string address;  // an e-mail address or a phone number
};

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
  // An event's people and the coordinates of its place, where stored.
  CalendarPerson organizer;
  std::vector<CalendarPerson> invitees;
  std::optional<double> latitude;
  std::optional<double> longitude;
};

}  // namespace current

#endif
