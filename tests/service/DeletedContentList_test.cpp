#include <gtest/gtest.h>

#include <string>

#include "kinds/AddressBookSql.h"
#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

// A backup whose databases were written with secure deletion on: nothing
// deleted is left in them.
std::string BackupWithNothingDeleted(const TempDir& root) {
  return BackupBuilder(IndexKind::ManifestDb)
      .AddDatabase("HomeDomain", kAddressBookPath, AddressBook().PersonWithNumber(1, "Ada", "'617-555-0199'").Sql())
      .Write(root.Path() + "b");
}

TEST(DeletedContentList, NullForEveryTypeWithNothingDeleted) {
  TempDir root;
  ServedBackup served(BackupWithNothingDeleted(root), Service::Current);
  ASSERT_TRUE(served.Analysed());
  for (int type = ContentCallHistory; type <= ContentVoicemail; ++type) {
    EXPECT_EQ(served.DeletedTree(type), nullptr) << type;
  }
  EXPECT_NE(served.Answer(ContentContact), "null");
}

TEST(DeletedContentList, NullForTypesOutsideTheRange) {
  TempDir root;
  ServedBackup served(BackupWithNothingDeleted(root), Service::Current);
  EXPECT_EQ(served.DeletedTree(12), nullptr);
  EXPECT_EQ(served.DeletedTree(-1), nullptr);
}

TEST(DeletedContentList, NullBeforeAnalysisAndForARecordOfTheDescribedService) {
  TempDir root;
  const std::string backup = BackupWithNothingDeleted(root);
  BackupDevice* device = GetBackupDeviceListAt(backup.c_str());
  EXPECT_EQ(GetDeletedContentList(device, ContentContact), nullptr);
  EXPECT_EQ(GetDeletedContentList(nullptr, ContentContact), nullptr);
  FreeDeviceList(device);
  ServedBackup described(backup, Service::Described);
  ASSERT_TRUE(described.Analysed());
  EXPECT_EQ(described.DeletedTree(ContentContact), nullptr);
}

}  // namespace
}  // namespace yhtest
