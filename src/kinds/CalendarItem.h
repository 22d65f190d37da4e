#ifndef YH_KINDS_CALENDARITEM_H
#define YH_KINDS_CALENDARITEM_H

#include <cstdint>
#include <string>

#include "common/VqBase.h"

// One calendar entry: an event, a reminder or a birthday.
class CalendarItem : public VqBase {
 public:
  std::string title;
  int32_t type = 1;  // 1 ordinary calendar, 0 reminder or birthday calendar
  std::string location;
  std::string description;
  std::string url;
  std::string startDate;
  std::string endDate;
  std::string area;
  std::string allDay;
  std::string status;
};

#endif
