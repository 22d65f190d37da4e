#ifndef YH_KINDS_REMINDERCALENDARS_H
#define YH_KINDS_REMINDERCALENDARS_H

// Whether a calendar of the calendar database holds reminders or birthdays
// rather than events, by its title; an untitled calendar holds events.
bool IsReminderCalendar(const char* title);

#endif
