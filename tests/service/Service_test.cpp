#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "kinds/Calendar.h"
#include "kinds/CallHistory.h"
#include "kinds/Contact.h"
#include "kinds/History.h"
#include "kinds/Note.h"
#include "kinds/Photo.h"
#include "kinds/Recording.h"
#include "kinds/Sms.h"
#include "kinds/SmsAttachment.h"
#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "libYH.h"
#include "service/Extractors.h"
#include "service/ServiceOperations.h"
#include "session/BackupSession.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/PlistDump.h"
#include "support/ScopedEnv.h"
#include "support/TreeSnapshot.h"

namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::NewDevice;
using yhtest::TempDir;

TEST(ServiceTable, HoldsTheFourOperationsInSlotOrder) {
  iDeviceBackupService* table = CreateDataRecoveryService();
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(sizeof(iDeviceBackupService), 4 * sizeof(void*));
  EXPECT_EQ(table->GetBackupDeviceList, &GetBackupDeviceList);
  EXPECT_EQ(table->FreeBackupDevice, &FreeBackupDevice);
  EXPECT_EQ(table->AnalyzeBackup, &AnalyzeBackup);
  EXPECT_EQ(table->GetContentList, &GetContentList);
  FreeiDeviceBackupService(table);
}

TEST(ServiceTable, AnyNumberOfTablesMayExist) {
  iDeviceBackupService* first = CreateDataRecoveryService();
  iDeviceBackupService* second = CreateDataRecoveryService();
  EXPECT_NE(first, second);
  EXPECT_EQ(first->AnalyzeBackup, second->AnalyzeBackup);
  FreeiDeviceBackupService(first);
  FreeiDeviceBackupService(second);
}

TEST(ServiceTable, FreeingTheTableLeavesABackupListAlone) {
  TempDir root;
  BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "MobileSync/Backup/one");
  yhtest::ApplicationSupportOverride support(root.Path());
  iDeviceBackupService* table = CreateDataRecoveryService();
  BackupDevice* list = table->GetBackupDeviceList();
  ASSERT_NE(list, nullptr);
  FreeiDeviceBackupService(table);
  EXPECT_EQ(list->backupType, 1);  // still readable: the list was not freed with the table
  yhtest::FreeDeviceList(list);
}

TEST(GetContentList, TypesAboveTenAndNegativeTypesGiveNullWithoutTouchingTheRecord) {
  BackupDevice device;
  memset(&device, 0xAB, sizeof device);  // any access through a field would crash
  BackupDevice before = device;
  EXPECT_EQ(GetContentList(&device, static_cast<iDeviceContentType>(11)), nullptr);
  EXPECT_EQ(GetContentList(&device, static_cast<iDeviceContentType>(-1)), nullptr);
  EXPECT_EQ(GetContentList(&device, static_cast<iDeviceContentType>(0x7fffffff)), nullptr);
  EXPECT_EQ(memcmp(&device, &before, sizeof device), 0);
}

TEST(GetContentList, EnumeratorsHaveTheirValues) {
  EXPECT_EQ(ContentCallHistory, 0);
  EXPECT_EQ(ContentContact, 1);
  EXPECT_EQ(ContentSms, 2);
  EXPECT_EQ(ContentSmsAttachment, 3);
  EXPECT_EQ(ContentNote, 4);
  EXPECT_EQ(ContentSafariHistory, 5);
  EXPECT_EQ(ContentCalendarEvent, 6);
  EXPECT_EQ(ContentCalendarReminder, 7);
  EXPECT_EQ(ContentRecording, 8);
  EXPECT_EQ(ContentCameraPhoto, 9);
  EXPECT_EQ(ContentOtherPhoto, 10);
  EXPECT_EQ(sizeof(iDeviceContentType), 4u);
}

TEST(GetContentList, RoutesEachTypeToItsExtractorWithItsFlag) {
  BackupDevice* device = NewDevice("/nowhere/", 1);
  AnalyzeBackup(device);
  const struct {
    iDeviceContentType type;
    Kind* extractor;
    int flag;
  } routes[] = {{ContentCallHistory, device->callHistory, 0},
                {ContentContact, device->contact, 0},
                {ContentSms, device->sms, 0},
                {ContentSmsAttachment, device->smsAttachment, 0},
                {ContentNote, device->note, 0},
                {ContentSafariHistory, device->history, 0},
                {ContentCalendarEvent, device->calendar, 1},
                {ContentCalendarReminder, device->calendar, 0},
                {ContentRecording, device->recording, 0},
                {ContentCameraPhoto, device->photo, 1},
                {ContentOtherPhoto, device->photo, 0}};
  for (const auto& route : routes) {
    SCOPED_TRACE(route.type);
    EXPECT_EQ(kContentRoutes[route.type].extractor(device), route.extractor);
    EXPECT_EQ(kContentRoutes[route.type].flag, route.flag);
  }
  FreeBackupDevice(device);
}

TEST(CreateKindObj, SharesOneContactsObjectAsTheNameLookup) {
  BackupDevice device{};
  CreateKindObj(&device);
  EXPECT_EQ(device.callHistory->GetContact(), device.contact);
  EXPECT_EQ(device.sms->GetContact(), device.contact);
  for (ExtractorField field : kExtractorFields) delete field(&device);
}

TEST(FreeBackupDevice, NullDoesNothing) { FreeBackupDevice(nullptr); }

TEST(FreeBackupDevice, FreesAListOfThreeWithTheirReadersAndExtractors) {
  TempDir root;
  const std::string a = BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "a");
  const std::string b = BackupBuilder(IndexKind::Mbdb).Write(root.Path() + "b");
  BackupDevice* first = NewDevice(a, 1);
  first->next = NewDevice(b, 0);
  first->next->next = NewDevice(a, 1);
  first->deviceName = strdup("name");
  first->serialNumber = strdup("serial");
  first->lastBackupDate = strdup("2019-05-01 10:00:00");
  EXPECT_EQ(AnalyzeBackup(first), 1);
  EXPECT_EQ(AnalyzeBackup(first->next), 1);
  // The sanitizer build reports any of the three records, texts, readers or
  // extractors left behind.
  FreeBackupDevice(first);
}

TEST(FreeBackupDevice, LeavesTheFourProductTextsToTheHost) {
  BackupDevice* device = NewDevice("/nowhere/", 1);
  char* kept[4] = {strdup("iPhone"), strdup("iPhone5,2"), strdup("9.3.5"), strdup("abcdef")};
  device->productName = kept[0];
  device->productType = kept[1];
  device->productVersion = kept[2];
  device->uniqueIdentifier = kept[3];
  FreeBackupDevice(device);
  // Still valid: freeing them here would be a double free under the sanitizers
  // if FreeBackupDevice had released them.
  EXPECT_STREQ(kept[1], "iPhone5,2");
  for (char* text : kept) free(text);
}

TEST(AnalyzeBackup, CreatesTheReaderOfItsTypeAndTheNineExtractors) {
  TempDir root;
  const std::string path = BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "new");
  BackupDevice* device = NewDevice(path, 1);
  EXPECT_EQ(AnalyzeBackup(device), 1);
  EXPECT_NE(dynamic_cast<ManifestDb*>(ReaderOf(device)), nullptr);
  EXPECT_NE(device->callHistory, nullptr);
  EXPECT_NE(device->contact, nullptr);
  EXPECT_NE(device->sms, nullptr);
  EXPECT_NE(device->smsAttachment, nullptr);
  EXPECT_NE(device->note, nullptr);
  EXPECT_NE(device->history, nullptr);
  EXPECT_NE(device->calendar, nullptr);
  EXPECT_NE(device->recording, nullptr);
  EXPECT_NE(device->photo, nullptr);
  FreeBackupDevice(device);

  const std::string old = BackupBuilder(IndexKind::Mbdb).Write(root.Path() + "old");
  device = NewDevice(old, 0);
  EXPECT_EQ(AnalyzeBackup(device), 1);
  EXPECT_NE(dynamic_cast<Mbdb*>(ReaderOf(device)), nullptr);
  FreeBackupDevice(device);
}

TEST(AnalyzeBackup, AnUnknownTypeCreatesNothingAndReturnsTheType) {
  BackupDevice* device = NewDevice("/nowhere/", 7);
  EXPECT_EQ(AnalyzeBackup(device), 7);
  EXPECT_EQ(device->indexReader, nullptr);
  EXPECT_EQ(device->callHistory, nullptr);
  EXPECT_EQ(device->photo, nullptr);
  FreeBackupDevice(device);
}

TEST(AnalyzeBackup, AnIndexThatWillNotOpenGivesZeroAndContentStillAnswers) {
  TempDir root;
  const std::string path = BackupBuilder(IndexKind::ManifestDb)
                               .AddFile("HomeDomain", "Library/SMS/sms.db", "not a database")
                               .Write(root.Path() + "broken");
  yhtest::WriteFile(path + "Manifest.db", "not a database");
  const std::string before = yhtest::SnapshotTree(path);
  BackupDevice* device = NewDevice(path, 1);
  EXPECT_EQ(AnalyzeBackup(device), 0);
  for (int type = 0; type <= 10; ++type) {
    SCOPED_TRACE(type);
    plist_t answer = GetContentList(device, static_cast<iDeviceContentType>(type));
    // Contacts, messages, notes and Safari answer with an empty array, the
    // others with nothing.
    const bool arrayKind = type == ContentContact || type == ContentSms || type == ContentNote ||
                           type == ContentSafariHistory;
    EXPECT_EQ(yhtest::DumpAndFree(answer), arrayKind ? "[]" : "null");
  }
  FreeBackupDevice(device);
  EXPECT_EQ(yhtest::SnapshotTree(path), before);
}

TEST(AnalyzeBackup, AMissingMbdbIndexGivesZero) {
  TempDir root;
  BackupDevice* device = NewDevice(root.Path(), 0);
  EXPECT_EQ(AnalyzeBackup(device), 0);
  EXPECT_NE(device->photo, nullptr);
  FreeBackupDevice(device);
}

TEST(AnalyzeBackup, CallingItTwiceReplacesTheEarlierObjectsWithoutLeaking) {
  TempDir root;
  const std::string path = BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "twice");
  BackupDevice* device = NewDevice(path, 1);
  EXPECT_EQ(AnalyzeBackup(device), 1);
  EXPECT_EQ(AnalyzeBackup(device), 1);
  EXPECT_NE(device->contact, nullptr);
  FreeBackupDevice(device);
}

}  // namespace
