#include "kinds/LocalDatabase.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "session/BackupSession.h"
#include "kinds/KindFixture.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/SystemFiles.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const char kPath[] = "Library/Example/example.db";
const char kSql[] = "CREATE TABLE t (v TEXT); INSERT INTO t VALUES ('file');\n";
const char kWalSql[] = "INSERT INTO t VALUES ('log');\n";

std::string Values(const LocalDatabase& local) {
  Database database(local.path, local.access);
  std::string values;
  Database::Statement rows(database, "select v from t order by rowid");
  while (rows.Step()) values += std::string(rows.Text(0)) + ";";
  return values;
}

size_t EntriesIn(const std::string& folder) {
  size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) count += entry.exists() ? 1 : 0;
  return count;
}

TEST(LocalDatabase, AWalIsReadFromAPrivateCopyOnlyWhenTheSessionReadsIt) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir root;
    TempDir temporary;
    ScopedEnv tmpdir(yhtest::TemporaryFolderVariable(), temporary.Path());
    const std::string backup =
        BackupBuilder(kind).AddDatabaseWithWal("HomeDomain", kPath, kSql, kWalSql).Write(root.Path() + "b");
    const std::string before = SnapshotTree(backup);
    {
      AnalysedDevice device(backup, kind);
      const StoredFile file = StoredFilesAt(device.Get(), kPath).at(0);
      const LocalDatabase asStored = LocalDatabaseOf(device.Get(), file);
      EXPECT_EQ(asStored.path, file.path);
      EXPECT_EQ(Values(asStored), "file;");
      EXPECT_EQ(EntriesIn(temporary.Path()), 0u);

      SessionOf(device.Get())->SetReadsWal(true);
      const LocalDatabase copy = LocalDatabaseOf(device.Get(), file);
      EXPECT_EQ(copy.access, Database::Access::PrivateCopy);
      EXPECT_EQ(copy.path.compare(0, temporary.Path().size(), temporary.Path()), 0) << copy.path;
      EXPECT_EQ(Values(copy), "file;log;");
      const std::string folder = SessionOf(device.Get())->PrivateFolder();
      platform::PathInfo status;
      ASSERT_TRUE(platform::Stat(folder, &status));
      if (yhtest::HasModes()) { EXPECT_EQ(status.permissions & 0777, 0700u); }
    }
    EXPECT_EQ(EntriesIn(temporary.Path()), 0u) << "the private folder outlived its record";
    EXPECT_EQ(SnapshotTree(backup), before);
  }
}

TEST(LocalDatabase, NoCopyIsMadeWithoutAWal) {
  TempDir root;
  TempDir temporary;
  ScopedEnv tmpdir(yhtest::TemporaryFolderVariable(), temporary.Path());
  const std::string backup = BackupBuilder(IndexKind::ManifestDb).AddDatabase("HomeDomain", kPath, kSql).Write(root.Path() + "b");
  AnalysedDevice device(backup, IndexKind::ManifestDb);
  SessionOf(device.Get())->SetReadsWal(true);
  const LocalDatabase local = LocalDatabaseOf(device.Get(), StoredFilesAt(device.Get(), kPath).at(0));
  EXPECT_EQ(local.access, Database::Access::Immutable);
  EXPECT_EQ(Values(local), "file;");
  EXPECT_EQ(EntriesIn(temporary.Path()), 0u);
}

TEST(LocalDatabase, AWalOfAnotherDomainIsNotThisDatabasesLog) {
  TempDir root;
  const DatabaseWithWal files = MakeDatabaseWithWal(kSql, kWalSql);
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddFile("HomeDomain", kPath, files.database)
                                 .AddFile("OtherDomain", std::string(kPath) + "-wal", files.wal)
                                 .Write(root.Path() + "b");
  AnalysedDevice device(backup, IndexKind::ManifestDb);
  SessionOf(device.Get())->SetReadsWal(true);
  EXPECT_EQ(Values(LocalDatabaseOf(device.Get(), StoredFilesAt(device.Get(), kPath).at(0))), "file;");
}

TEST(StoredFiles, FindsFilesByPathAndDomainOnBothIndexKinds) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir root;
    BackupBuilder builder(kind);
    builder.AddFile("HomeDomain", "Library/a", "1").AddFile("AppDomain-x", "Library/a", "2").AddFile("HomeDomain", "Library/b", "3");
    const std::string backup = builder.Write(root.Path() + "b");
    AnalysedDevice device(backup, kind);
    const std::vector<StoredFile> both = StoredFilesAt(device.Get(), "Library/a");
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0].domain, "HomeDomain");
    EXPECT_EQ(both[0].path, backup + builder.StoredPath("HomeDomain", "Library/a"));
    EXPECT_EQ(both[1].domain, "AppDomain-x");
    EXPECT_EQ(StoredFileIn(device.Get(), "HomeDomain", "Library/a")->path, both[0].path);
    EXPECT_EQ(StoredFileIn(device.Get(), "AppDomain-x", "Library/a")->path, both[1].path);
    EXPECT_FALSE(StoredFileIn(device.Get(), "OtherDomain", "Library/a").has_value());
    EXPECT_FALSE(StoredFileIn(device.Get(), "HomeDomain", "Library/c").has_value());
    EXPECT_FALSE(StoredFileIn(device.Get(), "AppDomain-x", "Library/b").has_value());
    const std::vector<StoredFile> one = StoredFilesAt(device.Get(), "Library/b");
    ASSERT_EQ(one.size(), 1u);
    EXPECT_EQ(one[0].path, backup + builder.StoredPath("HomeDomain", "Library/b"));
    EXPECT_EQ(one[0].size, 1u);
    EXPECT_TRUE(one[0].regular);
    EXPECT_TRUE(StoredFilesAt(device.Get(), "Library/c").empty());
  }
}

}  // namespace
}  // namespace yhtest
