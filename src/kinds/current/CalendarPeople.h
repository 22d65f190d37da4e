#ifndef YH_KINDS_CURRENT_CALENDARPEOPLE_H
#define YH_KINDS_CURRENT_CALENDARPEOPLE_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "common/Database.h"
#include "common/SchemaInfo.h"
#include "kinds/current/CalendarEntry.h"

namespace current {

// The people of a calendar database. A Participant row, joined to its
// Identity row, gives a name and an address, whatever columns and tables
// the generation has: the organizer is the participant an item's
// organizer_id names, the invitees its participants of entity type 7.
class CalendarPeople {
 public:
  explicit CalendarPeople(const SchemaInfo& schema) : schema_(schema) {}

  // The part of an items query that reads each item's organizer: its select
  // list (columns named "organizer_..."; NULLs when the database cannot say)
  // and its joins on CalendarItem `item`.
  struct Query {
    std::string columns;
    std::string joins;
  };
  Query Organizer(const std::string& item) const;

  // The invitees of each calendar item by its rowid, in stored order.
  std::map<int64_t, std::vector<CalendarPerson>> Invitees(Database& database) const;

 private:
  std::string Columns(const std::string& participant, const std::string& identity, const std::string& prefix,
                      bool joined) const;
  std::string IdentityJoin(const std::string& participant, const std::string& identity) const;
  bool HasIdentities() const;

  const SchemaInfo& schema_;
};

// The columns of one person that a select list named with `prefix`.
class CalendarPersonColumns {
 public:
  CalendarPersonColumns(const Database::Statement& rows, const std::string& prefix);

  // The display name, else the first and last names; the participant's
  // e-mail address, else its phone number, else the identity's address
  // without its "mailto:" or "tel:".
  CalendarPerson PersonAt(const Database::Statement& rows) const;

 private:
  int email_, phone_, displayName_, firstName_, lastName_, address_;
};

}  // namespace current

#endif
