#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "fault/SampleBackup.h"
#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/PlistDump.h"
#include "support/ScopedEnv.h"
#include "support/TreeSnapshot.h"

// The whole service as a host uses it: two backups (one of each index kind,
// a few records of every kind) found in the default location, analysed, and
// asked for every content type twice. CI also runs this test under
// valgrind.
namespace {

using yhtest::IndexKind;
using yhtest::TempDir;

using Counts = std::map<std::string, std::vector<int>>;

// The service answers NULL.
constexpr int kNull = -1;

// Records expected per content type, in enumeration order, of each service:
// the described service knows no voicemail and no WhatsApp.
const Counts kDescribedCounts = {
    {"Sample iPhone old", {4, 2, 2, 2, 2, 3, 1, 1, 1, 1, 1, kNull, kNull, kNull}},
    {"Sample iPhone new", {2, 2, 2, 2, 2, 2, 1, 1, 1, 1, 1, kNull, kNull, kNull}},
};
const Counts kCurrentCounts = {
    {"Sample iPhone old", {4, 2, 2, 2, 2, 3, 1, 1, 1, 1, 1, 2, 2, 2}},
    {"Sample iPhone new", {2, 2, 2, 2, 2, 2, 1, 1, 1, 1, 1, 2, 2, 2}},
};

std::string Text(plist_t array, uint32_t index, const char* key) {
  char* text = nullptr;
  plist_get_string_val(plist_dict_get_item(plist_array_get_item(array, index), key), &text);
  std::string copy = text ? text : "";
  std::free(text);
  return copy;
}

void DriveWholeService(iDeviceBackupService* (*create)(), const Counts& expectedCounts) {
  TempDir root;
  const std::string backups = root.Path() + "MobileSync/Backup/";
  yhtest::sample::Builder(IndexKind::Mbdb).InfoString("Device Name", "Sample iPhone old").Write(backups + "old");
  yhtest::sample::Builder(IndexKind::ManifestDb).InfoString("Device Name", "Sample iPhone new").Write(backups + "new");
  const std::string before = yhtest::SnapshotTree(backups);
  yhtest::ApplicationSupportOverride support(root.Path());

  iDeviceBackupService* service = create();
  BackupDevice* list = service->GetBackupDeviceList();
  int seen = 0;
  for (BackupDevice* device = list; device; device = device->next, ++seen) {
    ASSERT_NE(device->deviceName, nullptr);
    SCOPED_TRACE(device->deviceName);
    const auto expected = expectedCounts.find(device->deviceName);
    ASSERT_NE(expected, expectedCounts.end());
    ASSERT_EQ(service->AnalyzeBackup(device), 1);
    std::vector<std::string> first;
    for (int round = 0; round < 2; ++round) {
      for (int type = ContentCallHistory; type <= ContentWhatsAppCalls; ++type) {
        plist_t answer = service->GetContentList(device, static_cast<iDeviceContentType>(type));
        if (expected->second[type] == kNull) {
          EXPECT_EQ(answer, nullptr) << "content type " << type;
        } else {
          ASSERT_EQ(plist_get_node_type(answer), PLIST_ARRAY) << "content type " << type;
          EXPECT_EQ(static_cast<int>(plist_array_get_size(answer)), expected->second[type]) << "content type " << type;
        }
        if (type == ContentContact) {
          EXPECT_EQ(Text(answer, 0, "name"), "Alice Smith");
        } else if (type == ContentSms) {
          EXPECT_EQ(Text(answer, 0, "another"), "Alice Smith");
        } else if (type == ContentCameraPhoto) {
          EXPECT_EQ(Text(answer, 0, "file_name"), "IMG_0001.JPG");
        }
        const std::string dump = yhtest::DumpAndFree(answer);
        if (round == 0) {
          first.push_back(dump);
        } else {
          EXPECT_EQ(dump, first[type]) << "content type " << type;
        }
      }
    }
  }
  EXPECT_EQ(seen, 2);
  yhtest::FreeDeviceList(list);
  FreeiDeviceBackupService(service);
  EXPECT_EQ(yhtest::SnapshotTree(backups), before);
}

TEST(EndToEnd, EveryContentTypeOfBothIndexKindsTwice) { DriveWholeService(CreateDataRecoveryService, kDescribedCounts); }

TEST(EndToEnd, TheCurrentServiceOnTheSameBackups) { DriveWholeService(CreateCurrentDataRecoveryService, kCurrentCounts); }

}  // namespace
