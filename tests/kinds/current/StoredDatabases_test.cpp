#include "kinds/current/StoredDatabases.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "kinds/KindFixture.h"
#include "session/BackupSession.h"
#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

const char kPath[] = "Library/Example/example.db";

std::string Table(const std::string& values) {
  return "CREATE TABLE t (v TEXT); INSERT INTO t VALUES " + values + ";\n";
}

std::vector<std::string> Values(Database& database) {
  std::vector<std::string> values;
  Database::Statement rows(database, "select v from t order by rowid");
  const int value = rows.Column("v");
  while (rows.Step()) values.push_back(rows.Text(value));
  return values;
}

TEST(StoredDatabases, ReadsEveryFileInIndexOrderOneAfterAnother) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir root;
    const std::string backup = BackupBuilder(kind)
                                   .AddDatabase("HomeDomain", kPath, Table("('a'), ('b')"))
                                   .AddDatabase("AppDomain-x", kPath, Table("('c')"))
                                   .Write(root.Path() + "b");
    AnalysedDevice device(backup, kind);
    ASSERT_TRUE(device.IndexRead());
    const std::vector<StoredFile> files = StoredFilesAt(device.Get(), kPath);
    ASSERT_EQ(files.size(), 2u);
    const std::vector<std::string> values = current::ReadStoredDatabases(device.Get(), files, Values);
    const std::vector<std::string> homeFirst = {"a", "b", "c"};
    const std::vector<std::string> homeLast = {"c", "a", "b"};
    EXPECT_EQ(values, files[0].domain == "HomeDomain" ? homeFirst : homeLast);
  }
}

TEST(StoredDatabases, AReaderThatAsksIsToldWhereEachDatabaseLies) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabase("HomeDomain", kPath, Table("('a'), ('b')"))
                                 .AddDatabase("AppDomain-x", kPath, Table("('c')"))
                                 .Write(root.Path() + "b");
  AnalysedDevice device(backup, IndexKind::ManifestDb);
  const std::vector<std::string> read = current::ReadStoredDatabases(
      device.Get(), StoredFilesAt(device.Get(), kPath), [](Database& database, const StoredFile& file) {
        std::vector<std::string> values = Values(database);
        for (std::string& value : values) value = file.domain + ":" + value;
        return values;
      });
  ASSERT_EQ(read.size(), 3u);
  for (const std::string& value : read) {
    EXPECT_TRUE(value == "HomeDomain:a" || value == "HomeDomain:b" || value == "AppDomain-x:c") << value;
  }
}

TEST(StoredDatabases, AFileTheIndexLacksGivesNoRecord) {
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kPath, Table("('a')")).Write(root.Path() + "b");
  AnalysedDevice device(backup, IndexKind::ManifestDb);
  EXPECT_TRUE(current::ReadStoredDatabases(device.Get(), std::optional<StoredFile>(), Values).empty());
  EXPECT_EQ(current::ReadStoredDatabases(device.Get(), StoredFileIn(device.Get(), "HomeDomain", kPath), Values),
            std::vector<std::string>{"a"});
}

// Each database is opened through OpenStoredDatabase: a session that reads
// -wal files gets the rows of the log too.
TEST(StoredDatabases, OpensEachDatabaseThroughTheWalSeam) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabaseWithWal("HomeDomain", kPath, Table("('file')"),
                                                     "INSERT INTO t VALUES ('log');\n")
                                 .Write(root.Path() + "b");
  AnalysedDevice device(backup, IndexKind::ManifestDb);
  const std::vector<StoredFile> files = StoredFilesAt(device.Get(), kPath);
  EXPECT_EQ(current::ReadStoredDatabases(device.Get(), files, Values), std::vector<std::string>{"file"});
  SessionOf(device.Get())->SetReadsWal(true);
  EXPECT_EQ(current::ReadStoredDatabases(device.Get(), files, Values), (std::vector<std::string>{"file", "log"}));
}

}  // namespace
}  // namespace yhtest
