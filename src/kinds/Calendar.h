#ifndef YH_KINDS_CALENDAR_H
#define YH_KINDS_CALENDAR_H

#include <string>

#include "kinds/CalendarItem.h"
#include "kinds/RecordKind.h"

class Database;

// Calendar events (flag 1) and reminders with birthdays (flag 0), read once
// from the calendar database and kept for both content types.
class Calendar : public RecordKind<CalendarItem> {
 public:
  Calendar() = default;

 protected:
  void ReadBackup(BackupDevice* device) override;
  bool Selects(const CalendarItem& item, int type) const override;
  void FillDict(const CalendarItem& item, plist_t dict) const override;

 private:
  void AddCalendarList(const std::string& path);
  // Each runs one query on an open database: 0 on success, -1 on failure.
  int QueryCalendarItem(Database& db);
  int QueryCalenderEvent(Database& db);
};

#endif
