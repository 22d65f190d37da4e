#include "kinds/PhoneIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "kinds/AddressBookSql.h"
#include "kinds/Contact.h"
#include "kinds/KindFixture.h"
#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

TEST(PhoneIndex, KeepsTheFirstNameGivenForANumber) {
  const std::string first = "Ann";
  const std::string second = "Bob";
  PhoneIndex index;
  index.Add("+15551234567", first);
  index.Add("+15551234567", second);
  index.Add("123", second);
  EXPECT_EQ(index.Find("+15551234567"), &first);
  EXPECT_EQ(index.Find("123"), &second);
}

TEST(PhoneIndex, FindsOnlyTheWholeNumber) {
  const std::string name = "Ann";
  PhoneIndex index;
  index.Add("+15551234567", name);
  EXPECT_EQ(index.Find("5551234567"), nullptr);
  EXPECT_EQ(index.Find("+155512345678"), nullptr);
  EXPECT_EQ(index.Find(""), nullptr);
}

// One person of a random address book: a unique name and values in row order.
struct Someone {
  int id = 0;
  std::string name;
  std::vector<std::string> values;
};

// The walk the index stands in for: database by database, person by
// ascending id, value by value, every ";"-separated piece of the value
// stripped of all but digits and "#*+,;".
std::string Walk(const std::vector<std::vector<Someone>>& books, const std::string& phone) {
  if (phone.empty()) return "(none)";
  for (const std::vector<Someone>& book : books) {
    for (const Someone& person : book) {
      for (const std::string& value : person.values) {
        std::string kept;
        for (const char c : value) {
          if (std::string("0123456789#*+,;").find(c) != std::string::npos) kept += c;
        }
        for (size_t start = 0; start <= kept.size();) {
          const size_t end = std::min(kept.find(';', start), kept.size());
          if (kept.substr(start, end - start) == phone) return person.name;
          start = end + 1;
        }
      }
    }
  }
  return "(none)";
}

// Numbers that clean to the same text in several ways, values holding
// several numbers, and values that hold no number at all.
const char* const kNumbers[] = {"1",
                                "12",
                                "123",
                                "+1 (555) 123-4567",
                                "+15551234567",
                                "555-1234",
                                "#31#",
                                "*67",
                                "1,2",
                                "+44 20 7946 0018",
                                "(555) 123-4567",
                                "x12",
                                "a@b.com",
                                "ext. 9",
                                "---",
                                "1 2 3",
                                "+1",
                                ""};
const size_t kNumberCount = sizeof kNumbers / sizeof *kNumbers;
const char* const kJoins[] = {";", " ; ", ";;", " ", ""};

class RandomBooks {
 public:
  explicit RandomBooks(unsigned seed) : engine_(seed) {}

  size_t Below(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(engine_); }

  std::string Value() {
    std::string value = kNumbers[Below(kNumberCount)];
    for (size_t more = Below(3); more > 0; --more)
      value += kJoins[Below(5)] + std::string(kNumbers[Below(kNumberCount)]);
    return value;
  }

  // Writes one database and returns its people by ascending id; rows go in
  // in random id order, and one value belongs to nobody.
  std::vector<Someone> Book(size_t number, AddressBook* sql) {
    std::set<int> ids;
    for (size_t count = Below(30); ids.size() < count;) ids.insert(1 + static_cast<int>(Below(100)));
    std::vector<Someone> people;
    for (const int id : ids) people.push_back({id, "P" + std::to_string(number) + "_" + std::to_string(id), {}});
    std::vector<size_t> order(people.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::shuffle(order.begin(), order.end(), engine_);
    for (const size_t i : order) sql->Person(people[i].id, "First", "'" + people[i].name + "'");
    sql->Label(1, "'_$!<Mobile>!$_'");
    int uid = 0;
    for (size_t row = 0, rows = people.empty() ? 0 : Below(4 * people.size()); row < rows; ++row) {
      Someone& person = people[Below(people.size())];
      const std::string value = Value();
      sql->Value(++uid, person.id, Below(2) ? 1 : 0, value.empty() && Below(2) ? "NULL" : "'" + value + "'");
      person.values.push_back(value);
    }
    sql->Value(++uid, 1000, 1, "'123'");
    // A line of a postal address: it takes part too, with a number of its own.
    if (!people.empty()) {
      Someone& person = people[Below(people.size())];
      const int parent = ++uid;
      const std::string line = "7" + std::to_string(number) + "0" + std::to_string(parent);
      sql->Value(parent, person.id, 1, "NULL").Entry(parent, 1, "'Street'", "'" + line + "'");
      person.values.push_back(line);
    }
    return people;
  }

 private:
  std::mt19937 engine_;
};

const char* const kDomains[] = {"HomeDomain", "AppDomainGroup-group.com.example.contacts", "MediaDomain"};

TEST(PhoneIndex, ContactsAnswerAsTheWalkOverEveryPropertyOnRandomAddressBooks) {
  RandomBooks random(424242);
  for (int backup = 0; backup < 40; ++backup) {
    const IndexKind kind = backup % 2 ? IndexKind::Mbdb : IndexKind::ManifestDb;
    BackupBuilder builder(kind);
    std::vector<std::vector<Someone>> books;
    for (size_t book = 0, count = 1 + random.Below(3); book < count; ++book) {
      AddressBook sql;
      books.push_back(random.Book(book, &sql));
      builder.AddDatabase(kDomains[book], kAddressBookPath, sql.Sql());
    }
    TempDir dir;
    AnalysedDevice device(builder.Write(dir.Path() + "backup"), kind);
    ASSERT_TRUE(device.IndexRead());
    Contact contact;

    // Every value as stored (the address lines are numbers already), the
    // numbers they clean to, and near misses.
    std::set<std::string> phones = {"",    "1;2",  "5551234567", "+155512345678", "123",     "+15551234567",
                                    "1,2", "#31#", "*67",        "+442079460018", "5551234", "12",
                                    "1",   "+1",   "2"};
    for (size_t i = 0; i < kNumberCount; ++i) phones.insert(kNumbers[i]);
    for (const auto& book : books) {
      for (const Someone& person : book) phones.insert(person.values.begin(), person.values.end());
    }
    for (const std::string& phone : phones) {
      const char* name = contact.FindNameByPhone(device.Get(), phone.c_str());
      ASSERT_EQ(name ? std::string(name) : "(none)", Walk(books, phone))
          << "backup " << backup << ", phone \"" << phone << "\"";
    }
  }
}

}  // namespace
}  // namespace yhtest
