#include <cctype>

#include "Generation.h"
#include "Sql.h"

namespace bench {
namespace {

const char* const kAreaCodes[] = {"415", "617", "212", "312", "206", "512", "303", "404"};
const char* const kLabels[] = {"_$!<Mobile>!$_", "_$!<Home>!$_",     "_$!<Work>!$_",
                               "iPhone",         "_$!<HomePage>!$_", "_$!<Anniversary>!$_"};
enum Label { kMobile = 1, kHome, kWork, kIPhone, kHomePage, kAnniversary };
const char* const kEntryKeys[] = {"Street", "City", "ZIP", "CountryCode"};
// ABMultiValue property numbers of the address book.
enum Property { kPhone = 3, kEmail = 4, kAddress = 5, kDate = 12, kUrl = 22 };

std::string NewNumber(Random& random) {
  return "+1" + std::string(kAreaCodes[random.Below(sizeof kAreaCodes / sizeof *kAreaCodes)]) + random.Digits(7);
}

// People type numbers in many ways; most clean back to "+1" and ten digits.
std::string AsTyped(const std::string& number, Random& random) {
  const std::string area = number.substr(2, 3);
  const std::string local = number.substr(5, 3) + "-" + number.substr(8);
  switch (random.Below(10)) {
    case 0:
      return "(" + area + ") " + local;  // without the country code: finds no chat
    case 1:
      return number;
    case 2:
    case 3:
      return "+1 " + area + "-" + local;
    default:
      return "+1 (" + area + ") " + local;
  }
}

std::string Email(const Contact& contact, Random& random) {
  std::string name = contact.first + "." + contact.last + std::to_string(random.Below(100));
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return name + "@example.com";
}

class AddressBookScript {
 public:
  explicit AddressBookScript(const std::string& schema) : sql_(schema) {
    for (size_t i = 0; i < sizeof kLabels / sizeof *kLabels; ++i) {
      sql_.Insert("ABMultiValueLabel", "ROWID, value", std::to_string(i + 1) + ", " + Quote(kLabels[i]));
    }
    for (size_t i = 0; i < sizeof kEntryKeys / sizeof *kEntryKeys; ++i) {
      sql_.Insert("ABMultiValueEntryKey", "ROWID, value", std::to_string(i + 1) + ", " + Quote(kEntryKeys[i]));
    }
  }

  void Value(size_t person, Property property, Label label, const std::string& value) {
    sql_.Insert("ABMultiValue", "UID, record_id, property, identifier, label, value",
                std::to_string(++uid_) + ", " + std::to_string(person) + ", " + std::to_string(property) + ", 0, " +
                    std::to_string(label) + ", " + (value.empty() ? "NULL" : Quote(value)));
  }

  // A postal address: a value without text whose lines are entries.
  void Address(size_t person, Random& random) {
    Value(person, kAddress, random.Chance(0.7) ? kHome : kWork, "");
    const std::string lines[] = {std::to_string(1 + random.Below(999)) + " " + random.Name() + " Street",
                                 random.Name() + "ville", random.Digits(5), "us"};
    for (size_t key = 0; key < 4; ++key) {
      sql_.Insert("ABMultiValueEntry", "parent_id, key, value",
                  std::to_string(uid_) + ", " + std::to_string(key + 1) + ", " + Quote(lines[key]));
    }
  }

  SqlScript& Sql() { return sql_; }

 private:
  SqlScript sql_;
  size_t uid_ = 0;
};

}  // namespace

std::vector<Contact> MakeContacts(Generation& generation) {
  Random& random = generation.random;
  std::vector<Contact> contacts(generation.counts.contacts);
  for (Contact& contact : contacts) {
    contact.first = random.Name();
    contact.middle = random.Chance(0.1) ? random.Name() : "";
    contact.last = random.Chance(0.9) ? random.Name() : "";
    contact.organization = random.Chance(0.2) ? random.Words(2) + " Ltd" : "";
    contact.phones.push_back(NewNumber(random));
  }
  return contacts;
}

std::string SomeNumber(Generation& generation, const std::vector<Contact>& contacts) {
  Random& random = generation.random;
  if (random.Chance(0.25)) return NewNumber(random);
  const Contact& contact = contacts[random.Skewed(contacts.size())];
  return contact.phones[random.Below(contact.phones.size())];
}

void AddAddressBook(Generation& generation, const std::vector<Contact>& contacts) {
  Random& random = generation.random;
  AddressBookScript book(generation.Newer() ? "AddressBook.sqlitedb-ios15" : "AddressBook.sqlitedb-ios7");
  for (size_t id = 1; id <= contacts.size(); ++id) {
    const Contact& contact = contacts[id - 1];
    book.Sql().Insert("ABPerson", "ROWID, First, Middle, Last, Organization, JobTitle, Note, CreationDate",
                      std::to_string(id) + ", " + Quote(contact.first) + ", " +
                          (contact.middle.empty() ? "NULL" : Quote(contact.middle)) + ", " +
                          (contact.last.empty() ? "NULL" : Quote(contact.last)) + ", " +
                          (contact.organization.empty() ? "NULL" : Quote(contact.organization)) + ", " +
                          (random.Chance(0.1) ? Quote(random.Words(1)) : "NULL") + ", " +
                          (random.Chance(0.05) ? Quote(random.Words(6)) : "NULL") + ", " +
                          std::to_string(DeviceTime(random)));
    book.Value(id, kPhone, random.Chance(0.6) ? kMobile : kIPhone, AsTyped(contact.phones.front(), random));
  }
  // The other values, spread over the people: more numbers, e-mail
  // addresses, postal addresses, home pages and anniversaries.
  for (size_t value = contacts.size(); value < generation.counts.properties; ++value) {
    const size_t id = 1 + random.Below(contacts.size());
    const Contact& contact = contacts[id - 1];
    const size_t kind = random.Below(100);
    if (kind < 25) {
      book.Value(id, kPhone, random.Chance(0.5) ? kHome : kWork, AsTyped(NewNumber(random), random));
    } else if (kind < 75) {
      book.Value(id, kEmail, random.Chance(0.5) ? kHome : kWork, Email(contact, random));
    } else if (kind < 87) {
      book.Address(id, random);
    } else if (kind < 94) {
      book.Value(id, kUrl, kHomePage, "http://www." + random.Word() + ".example.com/");
    } else {
      book.Value(id, kDate, kAnniversary, std::to_string(DeviceTime(random)));
    }
  }
  generation.rows.Database("HomeDomain", "Library/AddressBook/AddressBook.sqlitedb", book.Sql().Text());
  generation.rows.File("HomeDomain", "Library/AddressBook/AddressBookImages.sqlitedb", 4096 * (1 + random.Below(2000)));
}

}  // namespace bench
