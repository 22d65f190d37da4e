#include "kinds/ReminderCalendars.h"

#include <cstring>

namespace {

const char* const kReminderCalendars[] = {"Birthdays", "Facebook Birthdays", "DEFAULT_TASK_CALENDAR_NAME",
                                          "Reminders"};

}  // namespace

bool IsReminderCalendar(const char* title) {
  if (!title) return false;
  for (const char* name : kReminderCalendars) {
    if (std::strcmp(title, name) == 0) return true;
  }
  return false;
}
