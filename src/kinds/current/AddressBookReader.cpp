#include "kinds/current/AddressBookReader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <set>

#include "common/CivilTime.h"
#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/SchemaInfo.h"
#include "common/TextHelpers.h"
#include "kinds/PersonTexts.h"

namespace current {
namespace {

// Built-in labels are stored as "_$!<Mobile>!$_"; custom ones as typed.
std::string CleanLabel(const std::string& label) {
  const auto open = label.find("_$!<");
  const auto close = label.find(">!$_");
  if (open == std::string::npos || close == std::string::npos || close < open + 4) return label;
  return label.substr(open + 4, close - open - 4);
}

constexpr int64_t kPhone = 3;
constexpr int64_t kEmail = 4;

// What an unlabelled value is, after the address book's property codes.
std::string PropertyName(int64_t property) {
  switch (property) {
    case kPhone: return "phone";
    case kEmail: return "email";
    case 5: return "address";
    case 12: return "date";
    case 13: return "instant message";
    case 22: return "url";
    case 23: return "related name";
    case 46: return "social profile";
    default: return "other";
  }
}

// The lines of a structured value in the order an address is written; keys
// not named here follow in row order. Keys are compared in lower case: some
// address books write them so.
const char* const kLineOrder[] = {"street", "sublocality", "city", "subadministrativearea", "state", "zip", "country"};

std::string JoinLines(const std::vector<std::pair<std::string, std::string>>& entries) {
  std::vector<std::string> lines;
  std::set<size_t> used;
  for (const char* key : kLineOrder) {
    for (size_t at = 0; at < entries.size(); ++at) {
      if (AsciiLower(entries[at].first) == key && used.insert(at).second && !entries[at].second.empty()) {
        lines.push_back(entries[at].second);
      }
    }
  }
  for (size_t at = 0; at < entries.size(); ++at) {
    // A country code repeats the country in two letters.
    if (!used.count(at) && AsciiLower(entries[at].first) != "countrycode" && !entries[at].second.empty()) {
      lines.push_back(entries[at].second);
    }
  }
  std::string joined;
  for (const std::string& line : lines) joined += (joined.empty() ? "" : "\n") + line;
  return joined;
}

// A label taken already gets the next free number: "Home", "Home 2", ...
// `properties` holds label, value, label, value, ...: a person has a few,
// so looking through them beats keeping a set of their labels.
std::string UniqueLabel(const std::string& label, const std::vector<std::string>& properties) {
  const auto taken = [&properties](const std::string& candidate) {
    for (size_t at = 0; at < properties.size(); at += 2) {
      if (properties[at] == candidate) return true;
    }
    return false;
  };
  std::string unique = label;
  for (int n = 2; taken(unique); ++n) unique = label + " " + std::to_string(n);
  return unique;
}

// Birthdays are calendar days stored as an instant at the day's start in
// UTC; shown as the day, they must not move with the host's zone.
std::string BirthdayText(const std::string& stored) {
  char* end = nullptr;
  const double seconds = std::strtod(stored.c_str(), &end);
  // A count beyond what 64 bits hold is no day; it is shown as stored.
  if (stored.empty() || *end != '\0' || !(std::fabs(seconds) < 9e18)) return stored;
  const time_t when = static_cast<time_t>(seconds) + 978307200;
  std::tm day{};
  if (!UtcFields(when, &day)) return stored;
  char text[32];
  std::snprintf(text, sizeof text, "%.4d-%.2d-%.2d", day.tm_year + 1900, day.tm_mon + 1, day.tm_mday);
  return text;
}

}  // namespace

AddressBook ReadAddressBook(Database& database) {
  const SchemaInfo schema(database);
  // Each person with the values met so far, packed once every row is read.
  struct Reading {
    Person person;
    std::vector<std::string> properties;  // label, value, label, value, ...
    std::vector<std::string> addresses;
  };
  // By ascending id once every person is read; ten thousand people are
  // found again by a binary search, without a tree node each.
  std::vector<Reading> people;
  const std::string personQuery =
      "select ABPerson.ROWID AS ROWID, " +
      schema.SelectList("ABPerson", {"First", "Middle", "Last", "Organization", "Department", "Note", "Birthday",
                                     "JobTitle", "Nickname", "CreationDate", "ModificationDate"}) +
      " from ABPerson";
  Database::Statement personRows(database, personQuery.c_str());
  const int rowId = personRows.Column("ROWID");
  const int first = personRows.Column("First");
  const int middle = personRows.Column("Middle");
  const int last = personRows.Column("Last");
  const int organization = personRows.Column("Organization");
  const int department = personRows.Column("Department");
  const int note = personRows.Column("Note");
  const int birthday = personRows.Column("Birthday");
  const int jobTitle = personRows.Column("JobTitle");
  const int nickname = personRows.Column("Nickname");
  const int created = personRows.Column("CreationDate");
  const int modified = personRows.Column("ModificationDate");
  while (personRows.Step()) {
    Person person;
    person.id = personRows.Int64(rowId);
    const std::string parts = GetEmptyStringIsNull(personRows.Text(first)) + " " +
                              GetEmptyStringIsNull(personRows.Text(middle)) + " " +
                              GetEmptyStringIsNull(personRows.Text(last));
    person.name = TakeMallocText(DeleteDelims(parts.c_str(), " ", " "));
    person.texts = PackedTexts{GetEmptyViewIsNull(personRows.Text(organization)),
                               GetEmptyViewIsNull(personRows.Text(department)),
                               GetEmptyViewIsNull(personRows.Text(note)),
                               BirthdayText(GetEmptyStringIsNull(personRows.Text(birthday))),
                               GetEmptyViewIsNull(personRows.Text(jobTitle)),
                               GetEmptyViewIsNull(personRows.Text(nickname)),
                               LocalDateText(personRows.Text(created), TimeBase::Since2001)};
    person.modificationDate = LocalDateText(personRows.Text(modified), TimeBase::Since2001);
    people.push_back(Reading{std::move(person), {}, {}});
  }
  const auto byId = [](const Reading& a, const Reading& b) { return a.person.id < b.person.id; };
  std::stable_sort(people.begin(), people.end(), byId);
  // A repeated id (only a damaged table has one) keeps its last row.
  people.erase(people.begin(), std::unique(people.rbegin(), people.rend(), [](const Reading& a, const Reading& b) {
                                 return a.person.id == b.person.id;
                               }).base());

  // The lines of structured values, by the value they belong to.
  std::map<int64_t, std::vector<std::pair<std::string, std::string>>> lines;
  if (schema.HasTable("ABMultiValueEntry") && schema.HasTable("ABMultiValueEntryKey")) {
    Database::Statement entryRows(
        database,
        "select e.parent_id AS parent_id, k.value AS key, e.value AS value from ABMultiValueEntry e "
        "left join ABMultiValueEntryKey k on k.rowid = e.key order by e.rowid");
    const int parent = entryRows.Column("parent_id");
    const int key = entryRows.Column("key");
    const int line = entryRows.Column("value");
    while (entryRows.Step()) {
      lines[entryRows.Int64(parent)].emplace_back(GetEmptyStringIsNull(entryRows.Text(key)),
                                                  GetEmptyStringIsNull(entryRows.Text(line)));
    }
  }

  const std::string valueQuery = "select m.record_id AS record_id, " +
                                 schema.SelectList("ABMultiValue", {"UID", "property"}, "m") +
                                 ", l.value AS label, m.value AS value from ABMultiValue m " +
                                 "left join ABMultiValueLabel l on l.rowid = m.label order by m.rowid";
  Database::Statement valueRows(database, valueQuery.c_str());
  const int recordId = valueRows.Column("record_id");
  const int uid = valueRows.Column("UID");
  const int property = valueRows.Column("property");
  const int labelText = valueRows.Column("label");
  const int valueText = valueRows.Column("value");
  while (valueRows.Step()) {
    const int64_t ownerId = valueRows.Int64(recordId);
    const auto owner = std::lower_bound(people.begin(), people.end(), ownerId,
                                        [](const Reading& reading, int64_t id) { return reading.person.id < id; });
    if (owner == people.end() || owner->person.id != ownerId) continue;
    std::string value = GetEmptyStringIsNull(valueRows.Text(valueText));
    const auto structured = valueRows.IsNull(uid) ? lines.end() : lines.find(valueRows.Int64(uid));
    if (structured != lines.end()) {
      const std::string joined = JoinLines(structured->second);
      if (!joined.empty()) value = joined;
    }
    if (value.empty()) continue;
    // Without the property column every value may be a number or an address.
    const bool names =
        valueRows.IsNull(property) || valueRows.Int64(property) == kPhone || valueRows.Int64(property) == kEmail;
    Reading& reading = *owner;
    if (names) reading.addresses.push_back(value);
    std::string label = CleanLabel(GetEmptyStringIsNull(valueRows.Text(labelText)));
    if (label.empty()) label = PropertyName(valueRows.Int64(property));
    reading.properties.push_back(UniqueLabel(label, reading.properties));
    reading.properties.push_back(std::move(value));
  }

  AddressBook book;
  book.people.reserve(people.size());
  book.addresses.reserve(people.size());
  for (Reading& reading : people) {
    Person& person = reading.person;
    if (!reading.properties.empty()) person.texts = WithProperties(person.texts, reading.properties);
    book.people.push_back(std::move(person));
    book.addresses.push_back(std::move(reading.addresses));
  }
  return book;
}

}  // namespace current
