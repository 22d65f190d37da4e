#include "kinds/Contact.h"

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/PhoneHelpers.h"
#include "common/PlistHelpers.h"
#include "common/TextHelpers.h"
#include "kinds/ColumnDate.h"
#include "kinds/SourceFiles.h"

namespace {

const KeySource kContactSource{&ManifestDb::GetContactKey, &Mbdb::GetContactKey};

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
std::vector<std::string> NumbersOf(const std::string& value) {
  std::string digits;
  for (const char c : value) {
    if (!isNotPhoneNumberChar(static_cast<unsigned char>(c))) digits += c;
  }
  std::vector<std::string> numbers;
  SplitWithFlag(digits.c_str(), ';', numbers);
  return numbers;
}

int PersonCallback(void* context, int /*columns*/, char** values, char** /*names*/) {
  auto* person = new Person;
  person->recordId = GetZeroIntIsNull(values[0]);
  person->name = TakeMallocText(DeleteDelims(values[1], " ", " "));
  person->organization = GetEmptyStringIsNull(values[2]);
  person->department = GetEmptyStringIsNull(values[3]);
  person->note = GetEmptyStringIsNull(values[4]);
  person->birthday = GetEmptyStringIsNull(values[5]);
  person->jobTitle = GetEmptyStringIsNull(values[6]);
  person->nickname = GetEmptyStringIsNull(values[7]);
  if (values[8] && *values[8]) person->creationDate = DateText2001(values[8]);
  // Row ids do not repeat; were one to, the later row would take its place.
  (*static_cast<Contact::PersonMap*>(context))[person->recordId].reset(person);
  return 0;
}

int PropertiesCallback(void* context, int /*columns*/, char** values, char** /*names*/) {
  auto& people = *static_cast<Contact::PersonMap*>(context);
  const auto owner = people.find(GetZeroIntIsNull(values[0]));
  if (owner == people.end()) return 0;
  owner->second->properties.push_back({CleanLabel(values[1]), CleanValue(values[2])});
  return 0;
}

}  // namespace

plist_t Contact::FindContent(void* device, int /*flag*/) {
  plist_t array = plist_new_array();
  if (personMaps_.empty()) StorePersonMap(device);
  // Further databases serve the name lookup only.
  if (!personMaps_.empty()) ConvertToPlist(personMaps_.front(), array);
  return array;
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
      for (const Person::Property& property : person->properties) {
        for (const std::string& number : NumbersOf(property.value)) {
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
  db.Exec(kPersonQuery, PersonCallback, &people) && db.Exec(kPropertyQuery, PropertiesCallback, &people) &&
      db.Exec(kPropertyEntryQuery, PropertiesCallback, &people);
}

void Contact::ConvertToPlist(const PersonMap& people, plist_t array) {
  for (const auto& entry : people) {
    const Person& person = *entry.second;
    VqCheckAlive(&person);
    plist_t dict = plist_new_dict();
    plist_array_append_item(array, dict);
    plist_dict_set_item(dict, "id", plist_new_uint(static_cast<uint64_t>(static_cast<int64_t>(person.recordId))));
    InsertPlistDictString(dict, "name", person.name.c_str());
    InsertPlistDictString(dict, "organization", person.organization.c_str());
    InsertPlistDictString(dict, "department", person.department.c_str());
    InsertPlistDictString(dict, "note", person.note.c_str());
    InsertPlistDictString(dict, "birthday", person.birthday.c_str());
    InsertPlistDictString(dict, "jobTitle", person.jobTitle.c_str());
    InsertPlistDictString(dict, "nickName", person.nickname.c_str());
    InsertPlistDictString(dict, "creationDate", person.creationDate.c_str());
    plist_t properties = plist_new_dict();
    plist_dict_set_item(dict, "properties", properties);
    // One insertion per property: a label met again replaces the earlier value.
    for (const Person::Property& property : person.properties) {
      InsertPlistDictString(properties, property.label.c_str(), property.value.c_str());
    }
  }
}
