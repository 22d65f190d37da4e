#ifndef YH_KINDS_CURRENT_CALENDAR_H
#define YH_KINDS_CURRENT_CALENDAR_H

#include <vector>

#include "kinds/current/CalendarEntry.h"
#include "kinds/current/StoredRecordKind.h"
#include "libYH.h"

namespace current {

// Events (type 6) and reminders (type 7) from the calendar database of every
// generation and from each store of the Reminders app (iOS 13 on), on both
// index kinds, with their true dates; read once for both types, the calendar
// database first, then each store, every one in stored order. Besides the
// described keys, an event has "time_zone", "calendar", "organizer" and
// "invitees" (dictionaries of "name" and "address"), and "latitude" and
// "longitude" where its place has both; a reminder "completed",
// "completion_date" and "list". NULL when the backup holds neither events
// nor reminders.
class Calendar : public StoredRecordKind<CalendarEntry> {
 public:
  // The flags that ask for each type.
  enum Flag : int { kReminders = 0, kEvents = 1 };

  Calendar() : StoredRecordKind(WhenNone::Null) {}

 private:
  std::vector<CalendarEntry> Read(const BackupDevice* device) override;
  bool Selects(const CalendarEntry& entry, int flag) const override;
  void InsertKeys(const CalendarEntry& entry, plist_t dict) const override;
};

}  // namespace current

#endif
