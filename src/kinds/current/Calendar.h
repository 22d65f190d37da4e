#ifndef YH_KINDS_CURRENT_CALENDAR_H
#define YH_KINDS_CURRENT_CALENDAR_H

#include <vector>

#include "kinds/Kind.h"
#include "kinds/current/CalendarEntry.h"
#include "libYH.h"

namespace current {

// Events (type 6) and reminders (type 7) from the calendar database of every
// generation and from each store of the Reminders app (iOS 13 on), on both
// index kinds, with their true dates; read once for both types. Besides the
// described keys, an event has "time_zone"; a reminder "completed",
// "completion_date" and "list".
class Calendar {
 public:
  Calendar() : events_(*this, false), reminders_(*this, true) {}
  Calendar(const Calendar&) = delete;
  Calendar& operator=(const Calendar&) = delete;

  Kind& Events() { return events_; }
  Kind& Reminders() { return reminders_; }

 private:
  // One content type's view of the shared entries.
  class Face : public Kind {
   public:
    Face(Calendar& owner, bool reminders) : owner_(owner), reminders_(reminders) {}
    // NULL when the backup holds neither events nor reminders.
    plist_t FindContent(void* device, int flag) override;

   private:
    Calendar& owner_;
    bool reminders_;
  };

  void Read(const BackupDevice* device);
  plist_t Answer(bool reminders) const;

  Face events_;
  Face reminders_;
  bool read_ = false;
  std::vector<CalendarEntry> entries_;
};

}  // namespace current

#endif
