#include "kinds/current/StoredRecordKind.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/PlistDump.h"

namespace current {
namespace {

struct Item {
  std::string name;
  bool odd = false;
};

// Answers what it is given, counting its reads; flag 1 asks for odd items,
// any other for the rest.
class Items : public StoredRecordKind<Item> {
 public:
  Items(WhenNone whenNone, std::vector<Item> items) : StoredRecordKind(whenNone), items_(std::move(items)) {}
  int reads = 0;

 private:
  std::vector<Item> Read(const BackupDevice* /*device*/) override {
    ++reads;
    return items_;
  }
  bool Selects(const Item& item, int flag) const override { return item.odd == (flag == 1); }
  void InsertKeys(const Item& item, plist_t dict) const override {
    plist_dict_set_item(dict, "name", plist_new_string(item.name.c_str()));
  }

  std::vector<Item> items_;
};

// Selects every record, as a kind that answers one content type does.
class Everything : public StoredRecordKind<Item> {
 public:
  Everything() : StoredRecordKind(WhenNone::Null) {}

 private:
  std::vector<Item> Read(const BackupDevice* /*device*/) override { return {{"one"}, {"two", true}}; }
  void InsertKeys(const Item& item, plist_t dict) const override {
    plist_dict_set_item(dict, "name", plist_new_string(item.name.c_str()));
  }
};

TEST(StoredRecordKind, ReadsOnceAndAnswersEveryRequestFromTheKeptRecords) {
  Items kind(WhenNone::Null, {{"a", true}, {"b"}, {"c", true}});
  EXPECT_EQ(yhtest::DumpAndFree(kind.FindContent(nullptr, 1)), R"([{"name":"a"},{"name":"c"}])");
  EXPECT_EQ(yhtest::DumpAndFree(kind.FindContent(nullptr, 0)), R"([{"name":"b"}])");
  EXPECT_EQ(yhtest::DumpAndFree(kind.FindContent(nullptr, 1)), R"([{"name":"a"},{"name":"c"}])");
  EXPECT_EQ(kind.reads, 1);
}

TEST(StoredRecordKind, NoRecordAnswersNullOrAnEmptyListAsTheKindSays) {
  Items nullKind(WhenNone::Null, {});
  EXPECT_EQ(nullKind.FindContent(nullptr, 0), nullptr);
  EXPECT_EQ(nullKind.FindContent(nullptr, 0), nullptr);
  EXPECT_EQ(nullKind.reads, 1) << "a backup without records is not read again";
  Items listKind(WhenNone::EmptyList, {});
  EXPECT_EQ(yhtest::DumpAndFree(listKind.FindContent(nullptr, 0)), "[]");
}

// A kind with records answers an empty list for a flag that selects none of
// them: NULL says that the backup holds none of the kind at all.
TEST(StoredRecordKind, AFlagThatSelectsNoRecordAnswersAnEmptyList) {
  Items kind(WhenNone::Null, {{"a", true}});
  EXPECT_EQ(yhtest::DumpAndFree(kind.FindContent(nullptr, 0)), "[]");
}

TEST(StoredRecordKind, AKindOfOneContentTypeAnswersEveryRecordWhateverTheFlag) {
  Everything kind;
  EXPECT_EQ(yhtest::DumpAndFree(kind.FindContent(nullptr, 0)), R"([{"name":"one"},{"name":"two"}])");
  EXPECT_EQ(yhtest::DumpAndFree(kind.FindContent(nullptr, 1)), R"([{"name":"one"},{"name":"two"}])");
}

}  // namespace
}  // namespace current
