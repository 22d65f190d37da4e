#include <gtest/gtest.h>
#include <plist/plist.h>

#include <memory>
#include <string>

#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/StoredDatabase.h"

namespace {

struct PlistFree {
  void operator()(plist_t node) const { plist_free(node); }
};
using Plist = std::unique_ptr<void, PlistFree>;

std::string Text(plist_t node) {
  char* text = nullptr;
  plist_get_string_val(node, &text);
  std::string copy = text ? text : "";
  free(text);
  return copy;
}

// A database whose deleted row holds a negative integer, a huge negative
// integer, a NULL and a blob, written beside its -wal.
class CarveFile : public ::testing::Test {
 protected:
  const yhtest::StoredDatabaseFile file_{
      "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0;"
      "CREATE TABLE t (id INTEGER PRIMARY KEY, small INTEGER, huge INTEGER, empty TEXT, data BLOB, r REAL);"
      "INSERT INTO t VALUES (1, -5, -9223372036854775807, NULL, x'00ff', 2.5), (2, 7, 1, 'x', NULL, 0.5);"
      "PRAGMA secure_delete=ON; DELETE FROM t WHERE id = 1;"};
  const std::string path_ = file_.Path();
};

TEST_F(CarveFile, GivesTheRowsOfTheLogBesideTheFileAsAPlist) {
  Plist rows(CarveDatabaseFile(path_.c_str(), nullptr, nullptr, 0));
  ASSERT_TRUE(rows);
  ASSERT_EQ(plist_array_get_size(rows.get()), 1u);
  plist_t row = plist_array_get_item(rows.get(), 0);
  EXPECT_EQ(Text(plist_dict_get_item(row, "table")), "t");
  EXPECT_EQ(Text(plist_dict_get_item(row, "source")), "wal");
  EXPECT_EQ(Text(plist_dict_get_item(row, "status")), "deleted");
  EXPECT_EQ(Text(plist_dict_get_item(row, "file")), "wal");
  uint64_t rowid = 0;
  plist_get_uint_val(plist_dict_get_item(row, "rowid"), &rowid);
  EXPECT_EQ(rowid, 1u);
  plist_t values = plist_dict_get_item(row, "values");
  double small = 0;
  plist_get_real_val(plist_dict_get_item(values, "small"), &small);
  EXPECT_EQ(small, -5);
  EXPECT_EQ(Text(plist_dict_get_item(values, "huge")), "-9223372036854775807");
  EXPECT_EQ(plist_dict_get_item(values, "empty"), nullptr) << "a NULL has no key";
  uint64_t length = 0;
  const char* data = plist_get_data_ptr(plist_dict_get_item(values, "data"), &length);
  EXPECT_EQ(std::string(data, length), std::string("\0\xff", 2));
  double real = 0;
  plist_get_real_val(plist_dict_get_item(values, "r"), &real);
  EXPECT_EQ(real, 2.5);
}

TEST_F(CarveFile, NamedLogsAndLiveRows) {
  Plist withoutLog(CarveDatabaseFile(path_.c_str(), (file_.Folder() + "none").c_str(), nullptr, 1));
  ASSERT_TRUE(withoutLog);
  EXPECT_EQ(plist_array_get_size(withoutLog.get()), 0u) << "the main file alone holds no table yet";
  Plist all(CarveDatabaseFile(path_.c_str(), (path_ + "-wal").c_str(), nullptr, 1));
  ASSERT_EQ(plist_array_get_size(all.get()), 2u);
  EXPECT_EQ(Text(plist_dict_get_item(plist_array_get_item(all.get(), 0), "status")), "live");
}

TEST(CarveDatabaseFile, GivesNullForNoFile) {
  yhtest::TempDir folder;
  EXPECT_EQ(CarveDatabaseFile(nullptr, nullptr, nullptr, 0), nullptr);
  EXPECT_EQ(CarveDatabaseFile((folder.Path() + "missing.db").c_str(), nullptr, nullptr, 0), nullptr);
  EXPECT_EQ(CarveDatabaseFile(folder.Path().c_str(), nullptr, nullptr, 0), nullptr);
}

}  // namespace
