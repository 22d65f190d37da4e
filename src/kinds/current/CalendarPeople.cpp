#include "kinds/current/CalendarPeople.h"

#include <string_view>

#include "common/ColumnHelpers.h"

namespace current {
namespace {

const char* const kParticipantColumns[] = {"email", "phone_number"};
const char* const kIdentityColumns[] = {"display_name", "first_name", "last_name", "address"};
const char kOrganizer[] = "organizer_";
const char kInvitee[] = "invitee_";
// Participant.entity_type of an invitee; the organizer's is 8.
const char kInviteeEntity[] = "7";

std::string Text(const Database::Statement& rows, int column) { return GetEmptyStringIsNull(rows.Text(column)); }

// An identity's address is a URL: "mailto:ada@example.org", "tel:+1...".
std::string WithoutScheme(const std::string& address) {
  for (const std::string_view scheme : {"mailto:", "tel:"}) {
    if (address.compare(0, scheme.size(), scheme) == 0) return address.substr(scheme.size());
  }
  return address;
}

}  // namespace

bool CalendarPeople::HasIdentities() const {
  return schema_.HasTable("Identity") && schema_.HasColumn("Participant", "identity_id");
}

std::string CalendarPeople::Columns(const std::string& participant, const std::string& identity,
                                    const std::string& prefix, bool joined) const {
  std::string list;
  const auto add = [&](const std::string& column, const char* name) {
    list += (list.empty() ? "" : ", ") + column + " AS " + prefix + name;
  };
  for (const char* name : kParticipantColumns) {
    add(joined ? schema_.ColumnOrNull("Participant", name, participant) : "NULL", name);
  }
  for (const char* name : kIdentityColumns) {
    add(joined && HasIdentities() ? schema_.ColumnOrNull("Identity", name, identity) : "NULL", name);
  }
  return list;
}

std::string CalendarPeople::IdentityJoin(const std::string& participant, const std::string& identity) const {
  if (!HasIdentities()) return std::string();
  return " left join Identity " + identity + " on " + identity + ".ROWID = " + participant + ".identity_id";
}

CalendarPeople::Query CalendarPeople::Organizer(const std::string& item) const {
  const bool joined = schema_.HasTable("Participant") && schema_.HasColumn("CalendarItem", "organizer_id");
  Query query{Columns("op", "oi", kOrganizer, joined), ""};
  if (joined) {
    query.joins = " left join Participant op on op.ROWID = " + item + ".organizer_id" + IdentityJoin("op", "oi");
  }
  return query;
}

std::map<int64_t, std::vector<CalendarPerson>> CalendarPeople::Invitees(Database& database) const {
  std::map<int64_t, std::vector<CalendarPerson>> invitees;
  if (!schema_.HasTable("Participant") || !schema_.HasColumn("Participant", "owner_id")) return invitees;
  std::string query = "select p.owner_id AS owner_id, " + Columns("p", "i", kInvitee, true) + " from Participant p" +
                      IdentityJoin("p", "i");
  if (schema_.HasColumn("Participant", "entity_type")) query += std::string(" where p.entity_type = ") + kInviteeEntity;
  query += " order by p.ROWID";
  Database::Statement rows(database, query.c_str());
  const int owner = rows.Column("owner_id");
  const CalendarPersonColumns columns(rows, kInvitee);
  while (rows.Step()) {
    if (!rows.IsNull(owner)) invitees[rows.Int64(owner)].push_back(columns.PersonAt(rows));
  }
  return invitees;
}

CalendarPersonColumns::CalendarPersonColumns(const Database::Statement& rows, const std::string& prefix)
    : email_(rows.Column((prefix + "email").c_str())),
      phone_(rows.Column((prefix + "phone_number").c_str())),
      displayName_(rows.Column((prefix + "display_name").c_str())),
      firstName_(rows.Column((prefix + "first_name").c_str())),
      lastName_(rows.Column((prefix + "last_name").c_str())),
      address_(rows.Column((prefix + "address").c_str())) {}

CalendarPerson CalendarPersonColumns::PersonAt(const Database::Statement& rows) const {
  CalendarPerson person;
  person.name = Text(rows, displayName_);
  if (person.name.empty()) {
    const std::string first = Text(rows, firstName_);
    const std::string last = Text(rows, lastName_);
    person.name = first + (first.empty() || last.empty() ? "" : " ") + last;
  }
  person.address = Text(rows, email_);
  if (person.address.empty()) person.address = Text(rows, phone_);
  if (person.address.empty()) person.address = WithoutScheme(Text(rows, address_));
  return person;
}

}  // namespace current
