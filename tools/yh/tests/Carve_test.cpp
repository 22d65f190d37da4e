#include <gtest/gtest.h>

#include "YhRun.h"
#include "support/StoredDatabase.h"

namespace {

using yhtool::Contains;
using yhtool::Yh;

// A database with one live and one deleted row, written to a fresh folder.
class CarveCommand : public ::testing::Test {
 protected:
  const yhtest::StoredDatabaseFile file_{
      "CREATE TABLE note (id INTEGER PRIMARY KEY, body TEXT, data BLOB);"
      "INSERT INTO note VALUES (1, 'keep me', NULL), (2, 'deleted words', x'cafe'), (3, 'also kept', NULL);"
      "DELETE FROM note WHERE id = 2;"};
  const std::string path_ = file_.Path();
};

TEST_F(CarveCommand, WritesTheDeletedRowsAsJson) {
  const yhtool::YhResult result = Yh({"carve", path_});
  ASSERT_EQ(result.code, 0) << result.err;
  EXPECT_TRUE(Contains(result.out, "\"table\": \"note\""));
  EXPECT_TRUE(Contains(result.out, "\"source\": \"freeblock\""));
  EXPECT_TRUE(Contains(result.out, "\"status\": \"deleted\""));
  EXPECT_TRUE(Contains(result.out, "\"body\": \"deleted words\""));
  EXPECT_TRUE(Contains(result.out, "\"data\": \"yv4=\""));
  EXPECT_EQ(result.out.find("keep me"), std::string::npos);
}

TEST_F(CarveCommand, AllAddsTheLiveRowsInEveryFormat) {
  const yhtool::YhResult csv = Yh({"carve", path_, "--all", "--format", "csv"});
  ASSERT_EQ(csv.code, 0) << csv.err;
  EXPECT_TRUE(Contains(csv.out, "table,source,status,rowid,file,offset,values.id,values.body"));
  EXPECT_TRUE(Contains(csv.out, "note,live,live,1,database,"));
  EXPECT_TRUE(Contains(csv.out, "keep me"));
  EXPECT_TRUE(Contains(csv.out, "deleted words"));
  const yhtool::YhResult table = Yh({"carve", path_, "--format", "table"});
  ASSERT_EQ(table.code, 0) << table.err;
  EXPECT_TRUE(Contains(table.out, "deleted words"));
}

TEST_F(CarveCommand, FailsForAMissingFile) {
  const yhtool::YhResult result = Yh({"carve", file_.Folder() + "missing.db"});
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(Contains(result.err, "cannot read"));
}

}  // namespace
