#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "service/Discovery.h"
#include "service/ServiceOperations.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/ScopedEnv.h"
#include "support/SystemFiles.h"
#include "support/TreeSnapshot.h"

namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::TempDir;

// 2019-05-01T10:00:00Z
constexpr int64_t kMay2019 = 1556704800;

std::string Text(const char* value) { return value ? value : "(null)"; }

std::string XmlPlist(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + body +
         "</dict></plist>\n";
}

class Discovery : public ::testing::Test {
 protected:
  void TearDown() override { yhtest::FreeDeviceList(list_); }

  std::string BackupFolder() const { return root_.Path() + "MobileSync/Backup/"; }
  BackupDevice* List() {
    yhtest::ApplicationSupportOverride support(root_.Path());
    list_ = GetBackupDeviceList();
    return list_;
  }

  yhtest::ScopedTimeZone zone_{"UTC"};
  TempDir root_;
  BackupDevice* list_ = nullptr;
};

TEST_F(Discovery, NoBackupFolderGivesNull) { EXPECT_EQ(List(), nullptr); }

TEST_F(Discovery, AnEmptyBackupFolderGivesNull) {
  std::filesystem::create_directories(BackupFolder());
  EXPECT_EQ(List(), nullptr);
}

TEST_F(Discovery, TwoBackupFoldersGiveTwoRecordsInListingOrder) {
  BackupBuilder(IndexKind::ManifestDb).InfoString("Device Name", "First").Write(BackupFolder() + "aaaa");
  BackupBuilder(IndexKind::Mbdb).InfoString("Device Name", "Second").Write(BackupFolder() + "bbbb");
  std::vector<std::string> expected;
  for (const std::string& name : platform::ListFolder(BackupFolder())) expected.push_back(BackupFolder() + name + "/");

  ASSERT_NE(List(), nullptr);
  std::vector<std::string> paths;
  for (BackupDevice* device = list_; device; device = device->next) {
    paths.push_back(device->backupPath);
    EXPECT_EQ(paths.back().back(), '/');
    EXPECT_EQ(device->backupType, paths.back().find("aaaa") != std::string::npos ? 1 : 0);
    EXPECT_EQ(device->indexReader, nullptr);
    EXPECT_EQ(device->contact, nullptr);
  }
  EXPECT_EQ(paths, expected);
}

TEST_F(Discovery, PlainFilesAndFoldersWithoutIndexAreSkipped) {
  BackupBuilder(IndexKind::ManifestDb).Write(BackupFolder() + "real");
  yhtest::WriteFile(BackupFolder() + "plain", "");
  yhtest::WriteFile(BackupFolder() + "empty/Info.plist", "");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(std::string(list_->backupPath), BackupFolder() + "real/");
  EXPECT_EQ(list_->next, nullptr);
}

TEST_F(Discovery, AFolderReachedThroughALinkCounts) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  TempDir elsewhere;
  const std::string target = BackupBuilder(IndexKind::Mbdb).Write(elsewhere.Path() + "kept");
  std::filesystem::create_directories(BackupFolder());
  ASSERT_TRUE(yhtest::MakeSymlink(target, BackupFolder() + "link"));
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(std::string(list_->backupPath), BackupFolder() + "link/");
}

TEST_F(Discovery, AFolderWithBothIndexesIsAnOldBackup) {
  const std::string path = BackupBuilder(IndexKind::ManifestDb).Write(BackupFolder() + "both");
  std::ofstream(path + "Manifest.mbdb", std::ios::binary) << std::string("mbdb\x05\x00", 6);
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(list_->backupType, 0);
}

TEST_F(Discovery, InfoPlistFillsTheDeviceTexts) {
  BackupBuilder(IndexKind::ManifestDb)
      .InfoString("Device Name", "Anna's iPhone")
      .InfoString("Serial Number", "C39XXXXXXXXX")
      .InfoString("Product Name", "iPhone 6")
      .InfoString("Product Type", "iPhone7,2")
      .InfoString("Product Version", "12.4")
      .InfoString("Unique Identifier", "00008020-001A2B3C4D5E6F70")
      .InfoDate("Last Backup Date", kMay2019)
      .ManifestBool("IsEncrypted", false)
      .Write(BackupFolder() + "device");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(Text(list_->deviceName), "Anna's iPhone");
  EXPECT_EQ(Text(list_->serialNumber), "C39XXXXXXXXX");
  EXPECT_EQ(Text(list_->productName), "iPhone 6");
  EXPECT_EQ(Text(list_->productType), "iPhone7,2");
  EXPECT_EQ(Text(list_->productVersion), "12.4");
  EXPECT_EQ(Text(list_->uniqueIdentifier), "00008020-001A2B3C4D5E6F70");
  EXPECT_EQ(Text(list_->lastBackupDate), "2019-05-01 10:00:00");
  EXPECT_EQ(list_->isEncrypted, 0u);
}

TEST_F(Discovery, LastBackupDateShowsTheTrueInstantInLocalTime) {
  BackupBuilder(IndexKind::Mbdb).InfoDate("Last Backup Date", kMay2019).Write(BackupFolder() + "d");
  yhtest::ScopedTimeZone newYork("America/New_York");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(Text(list_->lastBackupDate), "2019-05-01 06:00:00");
}

TEST_F(Discovery, LastBackupDateInWinterInNewYork) {
  BackupBuilder(IndexKind::Mbdb).InfoDate("Last Backup Date", 1548237600).Write(BackupFolder() + "d");
  yhtest::ScopedTimeZone newYork("America/New_York");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(Text(list_->lastBackupDate), "2019-01-23 05:00:00");  // 10:00Z, five hours behind
}

TEST_F(Discovery, ManifestDateIsUsedOnlyWithoutLastBackupDate) {
  BackupBuilder(IndexKind::ManifestDb).ManifestDate("Date", kMay2019).Write(BackupFolder() + "a");
  ASSERT_NE(List(), nullptr);
  // Seconds since 2001 through the host-offset epoch: under UTC the true instant.
  EXPECT_EQ(Text(list_->lastBackupDate), "2019-05-01 10:00:00");
}

TEST_F(Discovery, ManifestDateIsIgnoredWhenInfoPlistHasADate) {
  BackupBuilder(IndexKind::ManifestDb)
      .InfoDate("Last Backup Date", kMay2019)
      .ManifestDate("Date", kMay2019 + 86400)
      .Write(BackupFolder() + "a");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(Text(list_->lastBackupDate), "2019-05-01 10:00:00");
}

TEST_F(Discovery, AnEmptyDeviceNameIsKeptEvenWhenLockdownHasOne) {
  BackupBuilder(IndexKind::ManifestDb)
      .InfoString("Device Name", "")
      .LockdownString("DeviceName", "From Lockdown")
      .Write(BackupFolder() + "a");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(Text(list_->deviceName), "");
}

TEST_F(Discovery, LockdownFillsWhatInfoPlistLacks) {
  BackupBuilder(IndexKind::ManifestDb)
      .InfoString("Serial Number", "FROMINFO")
      .LockdownString("DeviceName", "Lockdown Phone")
      .LockdownString("SerialNumber", "FROMLOCKDOWN")
      .LockdownString("ProductType", "iPad4,1")
      .LockdownString("UniqueDeviceID", "udid")
      .LockdownString("ProductVersion", "8.1")
      .Write(BackupFolder() + "a");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(Text(list_->deviceName), "Lockdown Phone");
  EXPECT_EQ(Text(list_->serialNumber), "FROMINFO");
  EXPECT_EQ(Text(list_->productType), "iPad4,1");
  EXPECT_EQ(Text(list_->uniqueIdentifier), "udid");
  EXPECT_EQ(Text(list_->productVersion), "8.1");
  EXPECT_EQ(list_->productName, nullptr);
  EXPECT_EQ(list_->lastBackupDate, nullptr);
}

TEST_F(Discovery, ProductNameComesOnlyFromInfoPlist) {
  BackupBuilder(IndexKind::ManifestDb)
      .LockdownString("ProductName", "iPhone OS")
      .LockdownString("ProductType", "iPhone7,2")
      .Write(BackupFolder() + "a");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(list_->productName, nullptr);
  EXPECT_EQ(Text(list_->productType), "iPhone7,2");
}

TEST_F(Discovery, EncryptedBackupsAreListedLikeAnyOther) {
  BackupBuilder(IndexKind::ManifestDb).ManifestBool("IsEncrypted", true).Write(BackupFolder() + "a");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(list_->isEncrypted, 1u);
  EXPECT_EQ(list_->backupType, 1);
}

TEST_F(Discovery, MissingOrUnreadablePlistsLeaveTheFieldsEmpty) {
  BackupBuilder(IndexKind::Mbdb).RawInfoPlist("this is not a plist").Write(BackupFolder() + "a");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(list_->deviceName, nullptr);
  EXPECT_EQ(list_->lastBackupDate, nullptr);
  EXPECT_EQ(list_->isEncrypted, 0u);
}

TEST_F(Discovery, ValuesOfTheWrongTypeCountAsAbsentOrZero) {
  const std::string path = BackupBuilder(IndexKind::Mbdb).Write(BackupFolder() + "a");
  std::ofstream(path + "Info.plist") << XmlPlist(
      "<key>Device Name</key><integer>5</integer>"
      "<key>Last Backup Date</key><string>yesterday</string>");
  std::ofstream(path + "Manifest.plist") << XmlPlist(
      "<key>IsEncrypted</key><string>yes</string>"
      "<key>Date</key><date>2019-05-01T10:00:00Z</date>"
      "<key>Lockdown</key><dict><key>DeviceName</key><true/><key>SerialNumber</key>"
      "<string>S</string></dict>");
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(list_->deviceName, nullptr);
  EXPECT_EQ(Text(list_->serialNumber), "S");
  EXPECT_EQ(Text(list_->lastBackupDate), "1970-01-01 00:00:00");
  EXPECT_EQ(list_->isEncrypted, 0u);
}

TEST_F(Discovery, ReadsNothingButThePropertyListsAndWritesNothing) {
  const std::string path = BackupBuilder(IndexKind::ManifestDb)
                               .InfoString("Device Name", "x")
                               .AddFile("HomeDomain", "Library/SMS/sms.db", "bytes")
                               .Write(BackupFolder() + "a");
  const std::string before = yhtest::SnapshotTree(root_.Path());
  yhtest::SetTreeWritable(path, false);
  const std::string readOnly = yhtest::SnapshotTree(root_.Path());
  ASSERT_NE(List(), nullptr);
  EXPECT_EQ(yhtest::SnapshotTree(root_.Path()), readOnly);
  yhtest::SetTreeWritable(path, true);
  EXPECT_EQ(yhtest::SnapshotTree(root_.Path()), before);
}

TEST_F(Discovery, ListAtAFolderOfBackupsListsItsSubFolders) {
  BackupBuilder(IndexKind::ManifestDb).InfoString("Device Name", "One").Write(root_.Path() + "anywhere/one");
  std::filesystem::create_directories(root_.Path() + "anywhere/nothing");
  list_ = GetBackupDeviceListAt((root_.Path() + "anywhere").c_str());
  ASSERT_NE(list_, nullptr);
  EXPECT_EQ(std::string(list_->backupPath), root_.Path() + "anywhere/one/");
  EXPECT_EQ(Text(list_->deviceName), "One");
  EXPECT_EQ(list_->next, nullptr);
}

TEST_F(Discovery, ListAtABackupFolderGivesThatOneBackup) {
  BackupBuilder(IndexKind::Mbdb).InfoString("Device Name", "Single").Write(root_.Path() + "single");
  list_ = GetBackupDeviceListAt((root_.Path() + "single/").c_str());
  ASSERT_NE(list_, nullptr);
  EXPECT_EQ(std::string(list_->backupPath), root_.Path() + "single/");
  EXPECT_EQ(list_->backupType, 0);
  EXPECT_EQ(Text(list_->deviceName), "Single");
  EXPECT_EQ(list_->next, nullptr);
}

// A host may name the folder with the system's own separators; the library
// gives its paths with "/" between names all the same.
TEST_F(Discovery, ListAtAFolderInTheSystemsFormGivesPathsWithSlashes) {
  BackupBuilder(IndexKind::ManifestDb).Write(root_.Path() + "native/one");
  list_ = GetBackupDeviceListAt(yhtest::NativePath(root_.Path() + "native/one").c_str());
  ASSERT_NE(list_, nullptr);
  EXPECT_EQ(std::string(list_->backupPath), root_.Path() + "native/one/");
  yhtest::FreeDeviceList(list_);
  list_ = GetBackupDeviceListAt(yhtest::NativePath(root_.Path() + "native").c_str());
  ASSERT_NE(list_, nullptr);
  EXPECT_EQ(std::string(list_->backupPath), root_.Path() + "native/one/");
}

TEST_F(Discovery, ListAtNullOrAMissingFolderGivesNull) {
  EXPECT_EQ(GetBackupDeviceListAt(nullptr), nullptr);
  EXPECT_EQ(GetBackupDeviceListAt((root_.Path() + "missing").c_str()), nullptr);
  EXPECT_EQ(GetBackupDeviceListAt(""), nullptr);
}

}  // namespace
