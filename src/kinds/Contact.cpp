#include "kinds/Contact.h"

#include <string_view>
#include <unordered_map>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/PhoneHelpers.h"
#include "common/PlistHelpers.h"
#include "common/TextHelpers.h"
#include "kinds/ColumnDate.h"
#include "kinds/SourceFiles.h"

namespace {

const SourcePaths kContactSource{"Library/AddressBook/AddressBook.sqlitedb",
                                 "Library/AddressBook/AddressBook.sqlitedb"};

const char kPersonQuery[] =
    "select rowid as record_id, (ifnull(First,'')||' '|| ifnull(Middle,'')|| ' ' || ifnull(Last,'')) as "
    "name,Organization,Department,Note,Birthday,JobTitle,Nickname,CreationDate from ABPerson";
const char kPropertyQuery[] =
    "select  m.record_id, l.value as type,m.value from ABMultiValue m left join ABMultiValueLabel l on "
    "l.rowid=m.label;";
// One property per entry of a structured value (the lines of a postal
// address), its value "key:value".
const char kPropertyEntryQuery[] =
    "select m.record_id,l.value,k.value || ':' || a.value from ABMultiValue m ,ABMultiValueLabel l, "
    "ABMultiValueEntry a , ABMultiValueEntryKey k on l.rowid=m.label and a.parent_id = m.uid and k.rowid "
    "= a.key;";

// Built-in labels are stored as "_$!<Mobile>!$_"; custom ones as typed.
const char kLabelOpen[] = "_$!<";
const char kLabelClose[] = ">!$_";

std::string CleanLabel(const char* stored) {
  const std::string label = GetEmptyStringIsNull(stored);
  const std::string::size_type open = label.find(kLabelOpen);
  const std::string::size_type close = label.find(kLabelClose);
  if (open == std::string::npos || close == std::string::npos) return label;
  const std::string::size_type begin = open + sizeof kLabelOpen - 1;
  return close > begin ? label.substr(begin, close - begin) : std::string();
}

std::string CleanValue(const char* stored) {
  if (!stored || !*stored) return std::string();
  // Only a text of byte values 0 to 9 and "-" passes this test, so ordinary
  // numbers keep their dashes here; the lookup removes them instead.
  if (IsPhoneFormat(stored, '-')) return TakeMallocText(DeleteDelims(stored, "-", nullptr));
  return stored;
}

// The numbers a stored value answers to: the value stripped of every
// character that cannot stand in a phone number ("-", blanks, brackets, dots,
// letters), cut at ";". Empty pieces never equal a non-empty number.
std::vector<std::string> NumbersOf(std::string_view value) {
  std::string digits;
  for (const char c : value) {
    if (!isNotPhoneNumberChar(static_cast<unsigned char>(c))) digits += c;
  }
  std::vector<std::string> numbers;
  SplitWithFlag(digits.c_str(), ';', numbers);
  return numbers;
}

// The people of one database while its values are read: labels and values
// wait here, by person, to be packed with the person's texts at the end.
struct Reading {
  Contact::PersonMap& people;
  std::unordered_map<Person*, std::vector<std::string>> properties;
};

int PersonCallback(void* context, int /*columns*/, char** values, char** /*names*/) {
  auto* person = new Person;
  person->recordId = GetZeroIntIsNull(values[0]);
  person->name = TakeMallocText(DeleteDelims(values[1], " ", " "));
  const std::string creationDate = values[8] && *values[8] ? DateText2001(values[8]) : std::string();
  person->texts = PackedTexts{GetEmptyViewIsNull(values[2]), GetEmptyViewIsNull(values[3]),
                              GetEmptyViewIsNull(values[4]), GetEmptyViewIsNull(values[5]),
                              GetEmptyViewIsNull(values[6]), GetEmptyViewIsNull(values[7]), creationDate};
  // Row ids do not repeat; were one to, the later row would take its place.
  static_cast<Reading*>(context)->people[person->recordId].reset(person);
  return 0;
}

int PropertiesCallback(void* context, int /*columns*/, char** values, char** /*names*/) {
  auto& reading = *static_cast<Reading*>(context);
  const auto owner = reading.people.find(GetZeroIntIsNull(values[0]));
  if (owner == reading.people.end()) return 0;
  std::vector<std::string>& properties = reading.properties[owner->second.get()];
  properties.push_back(CleanLabel(values[1]));
  properties.push_back(CleanValue(values[2]));
  return 0;
}

}  // namespace

bool Contact::HandContent(void* device, int /*flag*/, RecordSink& sink) {
  if (personMaps_.empty()) StorePersonMap(device);
  // Further databases serve the name lookup only.
  if (!personMaps_.empty()) ConvertToPlist(personMaps_.front(), sink);
  return true;
}

const char* Contact::FindNameByPhone(void* device, const char* phone) {
  if (!phone) return nullptr;
  if (personMaps_.empty()) StorePersonMap(device);
  if (*phone == '\0') return nullptr;
  const std::string* name = names_.Find(phone);
  return name ? name->c_str() : nullptr;
}

void Contact::StorePersonMap(void* device) {
  for (const std::string& path : SourceFiles(static_cast<BackupDevice*>(device), kContactSource)) {
    personMaps_.emplace_back();
    AddContactList(personMaps_.back(), path);
  }
  IndexNumbers();
}

// Database by database, by ascending record id, property by property: the
// first person listed for a number is the one a walk would find first.
void Contact::IndexNumbers() {
  for (const PersonMap& people : personMaps_) {
    for (const auto& entry : people) {
      const Person* person = entry.second.get();
      VqCheckAlive(person);
      for (size_t property = 0; property < PersonPropertyCount(person->texts); ++property) {
        for (const std::string& number : NumbersOf(person->texts.View(PersonValue(property)))) {
          // An empty piece never equals a number that is looked up.
          if (!number.empty()) names_.Add(number, person->name);
        }
      }
    }
  }
}

void Contact::AddContactList(PersonMap& people, const std::string& path) {
  Database db(path);
  if (!db.IsOpen()) return;
  // The first query that fails ends the reading; rows already read stay.
  Reading reading{people, {}};
  db.Exec(kPersonQuery, PersonCallback, &reading) && db.Exec(kPropertyQuery, PropertiesCallback, &reading) &&
      db.Exec(kPropertyEntryQuery, PropertiesCallback, &reading);
  for (const auto& [person, properties] : reading.properties) person->texts = WithProperties(person->texts, properties);
}

void Contact::ConvertToPlist(const PersonMap& people, RecordSink& sink) {
  for (const auto& entry : people) {
    const Person& person = *entry.second;
    VqCheckAlive(&person);
    plist_t dict = plist_new_dict();
    InsertPersonTexts(person.recordId, person.name.c_str(), person.texts, dict);
    if (!sink.Put(dict)) return;
  }
}
