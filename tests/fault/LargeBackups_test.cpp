#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fault/FaultBench.h"
#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/TreeSnapshot.h"

// Sizes far beyond a real backup: a Backup folder of thousands of
// sub-folders, and indexes that list a hundred thousand files of which none
// was copied.
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::TempDir;

constexpr int kFolders = 5000;
constexpr int kIndexedFiles = 100000;

TEST(LargeBackups, FiveThousandSubFoldersAreListedOnce) {
  TempDir root;
  const std::string backups = root.Path() + "Backup/";
  // Every fourth holds an empty index, every other one nothing at all.
  for (int i = 0; i < kFolders; ++i) {
    const std::string folder = backups + std::to_string(i);
    std::filesystem::create_directories(folder);
    if (i % 4 == 0) yhtest::WriteFile(folder + (i % 8 ? "/Manifest.db" : "/Manifest.mbdb"), "");
  }
  BackupBuilder(IndexKind::ManifestDb).InfoString("Device Name", "real").Write(backups + "real");
  const std::string before = yhtest::SnapshotTree(backups);

  iDeviceBackupService* service = CreateDataRecoveryService();
  BackupDevice* list = GetBackupDeviceListAt(backups.c_str());
  int count = 0;
  int named = 0;
  for (BackupDevice* device = list; device; device = device->next) {
    ++count;
    if (device->deviceName && std::string(device->deviceName) == "real") ++named;
  }
  EXPECT_EQ(count, kFolders / 4 + 1);
  EXPECT_EQ(named, 1);
  yhtest::FreeDeviceList(list);
  FreeiDeviceBackupService(service);
  EXPECT_EQ(yhtest::SnapshotTree(backups), before);
}

// The Manifest.mbdb reader keeps no record of an absent file (and, by
// design, does not free it either).
TEST(LargeBackups, AnMbdbIndexOfAHundredThousandAbsentFilesAnswersNothing) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::Mbdb).Write(root.Path() + "backup");
  std::string index = yhtest::MbdbSignature();
  for (int i = 0; i < kIndexedFiles; ++i) {
    yhtest::MbdbRecord record;
    record.domain = "HomeDomain";
    record.path = i % 2 ? "Library/SMS/sms.db" : "Media/DCIM/100APPLE/IMG_" + std::to_string(i) + ".JPG";
    record.size = 4096;
    index += record.Bytes();
  }
  yhtest::WriteFile(backup + "Manifest.mbdb", index);
  const std::string before = yhtest::SnapshotTree(backup);
  const yhtest::fault::Answers answers = yhtest::fault::AskEverything(backup);
  ASSERT_TRUE(answers.found);
  for (const std::string& answer : answers.rounds[0]) EXPECT_TRUE(answer == "null" || answer == "[]") << answer;
  EXPECT_EQ(yhtest::SnapshotTree(backup), before);
}

TEST(LargeBackups, AManifestDbIndexOfAHundredThousandAbsentFilesAnswersNothing) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "backup");
  std::filesystem::remove(backup + "Manifest.db");
  yhtest::WriteDatabase(backup + "Manifest.db",
                        yhtest::Schema("Manifest.db-ios14") +
                            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                            std::to_string(kIndexedFiles) +
                            ") INSERT INTO Files (fileID, domain, relativePath, flags) SELECT printf('%040x', i), "
                            "'HomeDomain', CASE WHEN i % 2 THEN 'Library/SMS/sms.db' ELSE 'Media/x' || i END, 1 "
                            "FROM n;\n");
  const std::string before = yhtest::SnapshotTree(backup);
  const yhtest::fault::Answers answers = yhtest::fault::AskEverything(backup);
  ASSERT_TRUE(answers.found);
  for (const std::string& answer : answers.rounds[0]) EXPECT_TRUE(answer == "null" || answer == "[]") << answer;
  EXPECT_EQ(yhtest::SnapshotTree(backup), before);
}

}  // namespace
