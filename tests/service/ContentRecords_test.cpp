#include <gtest/gtest.h>
#include <plist/plist.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "fault/SampleBackup.h"
#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/HeapInUse.h"
#include "support/PlistDump.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

using Walker = int32_t (*)(BackupDevice*, iDeviceContentType, YHRecordCallback, void*);

// What one walk handed: the result and the records the callback took.
struct Walked {
  int32_t result = -1;
  std::vector<plist_t> records;
};

int32_t TakeEvery(plist_t record, void* walked) {
  static_cast<Walked*>(walked)->records.push_back(record);
  return YHRecordTaken;
}

Walked Walk(Walker walker, BackupDevice* device, int type) {
  Walked walked;
  walked.result = walker(device, static_cast<iDeviceContentType>(type), TakeEvery, &walked);
  return walked;
}

// The records gathered into an array as the array answer would hold them;
// "null" for a walk that had nothing to give.
std::string DumpAsArray(Walked walked) {
  if (walked.result == YHRecordsNone) {
    EXPECT_TRUE(walked.records.empty());
    return "null";
  }
  EXPECT_EQ(walked.result, YHRecordsDone);
  plist_t array = plist_new_array();
  for (plist_t record : walked.records) plist_array_append_item(array, record);
  return DumpAndFree(array);
}

// Every content type (and a few outside the range), live and deleted:
// the streamed records are the array's records.
void ExpectStreamedEqualsArrays(const std::string& backup, Service service) {
  SCOPED_TRACE(backup);
  ServedBackup served(backup, service);
  ASSERT_TRUE(served.Analysed());
  for (int type = -1; type <= ContentWhatsAppCalls + 1; ++type) {
    SCOPED_TRACE(type);
    EXPECT_EQ(DumpAsArray(Walk(GetContentRecords, served.Device(), type)), served.Answer(type));
    EXPECT_EQ(DumpAsArray(Walk(GetDeletedContentRecords, served.Device(), type)), served.DeletedAnswer(type));
  }
}

std::vector<std::string> BuiltBackups(const TempDir& root) {
  return {sample::Builder(IndexKind::Mbdb).Write(root.Path() + "old"),
          sample::Builder(IndexKind::ManifestDb).Write(root.Path() + "new")};
}

TEST(ContentRecords, StreamedRecordsAreTheArraysRecordsOnBuiltBackupsOfBothServices) {
  TempDir root;
  for (const std::string& backup : BuiltBackups(root)) {
    ExpectStreamedEqualsArrays(backup, Service::Described);
    ExpectStreamedEqualsArrays(backup, Service::Current);
  }
}

TEST(ContentRecords, StreamedRecordsAreTheArraysRecordsOnTheSampleBackups) {
  const std::filesystem::path samples = YH_SAMPLE_BACKUPS;
  if (!std::filesystem::is_directory(samples)) GTEST_SKIP() << "no sample backups in " << samples;
  int seen = 0;
  for (const auto& entry : std::filesystem::directory_iterator(samples)) {
    ExpectStreamedEqualsArrays(entry.path().string() + "/", Service::Described);
    ExpectStreamedEqualsArrays(entry.path().string() + "/", Service::Current);
    ++seen;
  }
  EXPECT_EQ(seen, 2);
}

// Counts the records and stops at the `stopAt`th.
struct Counter {
  int stopAt;
  int seen = 0;
};

int32_t StopAt(plist_t record, void* counter) {
  auto& count = *static_cast<Counter*>(counter);
  EXPECT_EQ(plist_get_node_type(record), PLIST_DICT);
  EXPECT_EQ(plist_get_parent(record), nullptr);
  return ++count.seen == count.stopAt ? YHRecordStop : YHRecordNext;
}

TEST(ContentRecords, TheWalkStopsAtTheRecordThatAsksForItInEveryKindOfBothServices) {
  TempDir root;
  for (const std::string& backup : BuiltBackups(root)) {
    for (Service service : {Service::Described, Service::Current}) {
      ServedBackup served(backup, service);
      for (int type = ContentCallHistory; type <= ContentWhatsAppCalls; ++type) {
        SCOPED_TRACE(backup + " " + std::to_string(type));
        plist_t answer = served.Tree(type);
        const int size = answer ? static_cast<int>(plist_array_get_size(answer)) : 0;
        plist_free(answer);
        if (size == 0) continue;
        Counter counter{1};
        const auto content = static_cast<iDeviceContentType>(type);
        EXPECT_EQ(GetContentRecords(served.Device(), content, StopAt, &counter), YHRecordsStopped);
        EXPECT_EQ(counter.seen, 1);
        Counter whole{size + 1};
        EXPECT_EQ(GetContentRecords(served.Device(), content, StopAt, &whole), YHRecordsDone);
        EXPECT_EQ(whole.seen, size);
      }
    }
  }
}

// Takes every second record.
int32_t TakeEverySecond(plist_t record, void* walked) {
  auto& taken = *static_cast<Walked*>(walked);
  if (taken.result++ % 2 != 0) return YHRecordNext;
  taken.records.push_back(record);
  return YHRecordTaken;
}

TEST(ContentRecords, ATakenRecordStaysTheHostsAndTheOthersAreFreed) {
  TempDir root;
  ServedBackup served(sample::Builder(IndexKind::Mbdb).Write(root.Path() + "old"), Service::Current);
  plist_t answer = served.Tree(ContentCallHistory);
  ASSERT_EQ(plist_array_get_size(answer), 4u);
  Walked walked;
  walked.result = 0;
  EXPECT_EQ(GetContentRecords(served.Device(), ContentCallHistory, TakeEverySecond, &walked), YHRecordsDone);
  ASSERT_EQ(walked.records.size(), 2u);
  EXPECT_EQ(DumpAndFree(walked.records[0]), Dump(plist_array_get_item(answer, 0)));
  EXPECT_EQ(DumpAndFree(walked.records[1]), Dump(plist_array_get_item(answer, 2)));
  plist_free(answer);
}

int32_t Stop(plist_t, void*) { return YHRecordStop; }

TEST(ContentRecords, NothingToGiveWhereTheArrayIsNullAndInvalidWithoutRecordOrCallback) {
  TempDir root;
  const std::string backup = sample::Builder(IndexKind::ManifestDb).Write(root.Path() + "new");
  BackupDevice* unanalysed = GetBackupDeviceListAt(backup.c_str());
  EXPECT_EQ(GetContentRecords(unanalysed, ContentContact, Stop, nullptr), YHRecordsNone);
  EXPECT_EQ(GetDeletedContentRecords(unanalysed, ContentContact, Stop, nullptr), YHRecordsNone);
  FreeDeviceList(unanalysed);
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(GetContentRecords(described.Device(), ContentVoicemail, Stop, nullptr), YHRecordsNone);
  EXPECT_EQ(GetContentRecords(described.Device(), static_cast<iDeviceContentType>(-1), Stop, nullptr),
            YHRecordsNone);
  EXPECT_EQ(GetDeletedContentRecords(described.Device(), ContentCallHistory, Stop, nullptr), YHRecordsNone);
  EXPECT_EQ(GetContentRecords(nullptr, ContentContact, Stop, nullptr), YHRecordsInvalid);
  EXPECT_EQ(GetContentRecords(described.Device(), ContentContact, nullptr, nullptr), YHRecordsInvalid);
  EXPECT_EQ(GetDeletedContentRecords(nullptr, ContentContact, Stop, nullptr), YHRecordsInvalid);
}

// A call history of `count` calls.
std::string ManyCalls(const TempDir& root, int count) {
  const std::string rows = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                           std::to_string(count) +
                           ") INSERT INTO ZCALLRECORD (Z_PK, ZADDRESS, ZDATE, ZORIGINATED) "
                           "SELECT i, '+1617555' || i, 600000000 + i, 1 FROM n;\n";
  return BackupBuilder(IndexKind::ManifestDb)
      .AddDatabase("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata",
                   Schema("CallHistory.storedata-ios18") + rows)
      .Write(root.Path() + "calls");
}

// The most heap in use while the records pass.
struct HeapPeak {
  size_t peak = 0;
  int records = 0;
};

// Every 500th record: reading the heap's use is slow.
int32_t NotePeak(plist_t, void* peak) {
  auto& heap = *static_cast<HeapPeak*>(peak);
  if (heap.records++ % 500 == 0) heap.peak = std::max(heap.peak, HeapInUse());
  return YHRecordNext;
}

TEST(ContentRecords, MemoryDoesNotGrowWithTheRecordsHanded) {
  if (HeapInUse() == 0) GTEST_SKIP() << "the allocator in use does not report the heap";
  TempDir root;
  ServedBackup served(ManyCalls(root, 20000), Service::Current);
  // The kind reads and keeps its records on the first request.
  plist_free(served.Tree(ContentCallHistory));
  const size_t beforeArray = HeapInUse();
  plist_t answer = served.Tree(ContentCallHistory);
  const size_t arrayBytes = HeapInUse() - beforeArray;
  ASSERT_EQ(plist_array_get_size(answer), 20000u);
  plist_free(answer);
  HeapPeak heap;
  const size_t before = HeapInUse();
  EXPECT_EQ(GetContentRecords(served.Device(), ContentCallHistory, NotePeak, &heap), YHRecordsDone);
  EXPECT_EQ(heap.records, 20000);
  EXPECT_LT(heap.peak, before + 64 * 1024) << "the array took " << arrayBytes;
  EXPECT_GT(arrayBytes, 4u * 1024 * 1024);
}

}  // namespace
}  // namespace yhtest
