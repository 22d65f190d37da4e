#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "fault/SampleBackup.h"
#include "kinds/AddressBookSql.h"
#include "index/IndexReader.h"
#include "libYH.h"
#include "session/BackupSession.h"
#include "service/ServiceOperations.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/PlistDump.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

std::string CallStore(int64_t date) {
  return Schema("CallHistory.storedata-ios18") +
         "INSERT INTO ZCALLRECORD (Z_PK, ZADDRESS, ZDATE, ZORIGINATED) VALUES (1, '+16175550199', " +
         std::to_string(date) + ", 1);\n";
}

std::string CallBackup(const TempDir& root, const std::string& name, int64_t date) {
  return BackupBuilder(IndexKind::ManifestDb)
      .AddDatabase("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", CallStore(date))
      .AddDatabase("HomeDomain", kAddressBookPath, AddressBook().PersonWithNumber(1, name, "'617-555-0199'").Sql())
      .Write(root.Path() + name);
}

TEST(CurrentService, SharesTheTableTypeAndTheListingOperations) {
  iDeviceBackupService* described = CreateDataRecoveryService();
  iDeviceBackupService* current = CreateCurrentDataRecoveryService();
  EXPECT_EQ(current->GetBackupDeviceList, described->GetBackupDeviceList);
  EXPECT_EQ(current->FreeBackupDevice, described->FreeBackupDevice);
  EXPECT_NE(current->AnalyzeBackup, described->AnalyzeBackup);
  EXPECT_NE(current->GetContentList, described->GetContentList);
  EXPECT_EQ(described->AnalyzeBackup, &AnalyzeBackup);
  EXPECT_EQ(described->GetContentList, &GetContentList);
  FreeiDeviceBackupService(described);
  FreeiDeviceBackupService(current);
}

TEST(CurrentService, TypesOutsideTheRangeAnswerNull) {
  TempDir root;
  ServedBackup served(CallBackup(root, "Ada", 583675200), Service::Current);
  EXPECT_EQ(served.Tree(ContentWhatsAppCalls + 1), nullptr);
  EXPECT_EQ(served.Tree(-1), nullptr);
  EXPECT_NE(served.Answer(ContentCallHistory), "null");
}

TEST(CurrentService, AnswersNothingBeforeAnalysis) {
  TempDir root;
  BackupDevice* device = GetBackupDeviceListAt(CallBackup(root, "Ada", 583675200).c_str());
  iDeviceBackupService* current = CreateCurrentDataRecoveryService();
  EXPECT_EQ(current->GetContentList(device, ContentCallHistory), nullptr);
  FreeDeviceList(device);
  FreeiDeviceBackupService(current);
}

TEST(CurrentService, ARecordAnalysedAgainByTheOtherServiceAnswersAsThatService) {
  TempDir root;
  ScopedTimeZone utc("UTC");
  const std::string backup = CallBackup(root, "Ada", 1235865600);  // 2040-03-01
  BackupDevice* device = GetBackupDeviceListAt(backup.c_str());
  iDeviceBackupService* described = CreateDataRecoveryService();
  iDeviceBackupService* current = CreateCurrentDataRecoveryService();
  ASSERT_EQ(current->AnalyzeBackup(device), 1);
  const std::string currentAnswer = DumpAndFree(current->GetContentList(device, ContentCallHistory));
  EXPECT_NE(currentAnswer.find("2040-03-01 00:00:00"), std::string::npos) << currentAnswer;
  ASSERT_EQ(described->AnalyzeBackup(device), 1);
  const std::string describedAnswer = DumpAndFree(described->GetContentList(device, ContentCallHistory));
  EXPECT_EQ(describedAnswer, ServedBackup(backup, Service::Described).Answer(ContentCallHistory));
  EXPECT_EQ(current->GetContentList(device, ContentCallHistory), nullptr);  // not analysed by this service
  ASSERT_EQ(current->AnalyzeBackup(device), 1);
  EXPECT_EQ(DumpAndFree(current->GetContentList(device, ContentCallHistory)), currentAnswer);
  FreeDeviceList(device);
  FreeiDeviceBackupService(described);
  FreeiDeviceBackupService(current);
}

// The described service reads the index on the caller's thread alone; the
// current one may test stored files on worker threads.
TEST(CurrentService, OnlyTheCurrentServiceTestsStoredFilesOnWorkerThreads) {
  TempDir root;
  BackupDevice* device = GetBackupDeviceListAt(CallBackup(root, "Ada", 0).c_str());
  iDeviceBackupService* described = CreateDataRecoveryService();
  iDeviceBackupService* current = CreateCurrentDataRecoveryService();
  ASSERT_EQ(described->AnalyzeBackup(device), 1);
  EXPECT_EQ(SessionOf(device)->Reader()->GetTestThreads(), TestThreads::CallerOnly);
  ASSERT_EQ(current->AnalyzeBackup(device), 1);
  EXPECT_EQ(SessionOf(device)->Reader()->GetTestThreads(), TestThreads::Workers);
  FreeDeviceList(device);
  FreeiDeviceBackupService(described);
  FreeiDeviceBackupService(current);
}

// Two hosts' threads, each with its own backup: the answers are those each
// gets alone. Run under ThreadSanitizer in CI.
TEST(CurrentService, TwoThreadsAnalyseTwoBackupsAtOnce) {
  TempDir root;
  ScopedTimeZone newYork("America/New_York");
  const std::string first = CallBackup(root, "Ada", 583675200);
  const std::string second = CallBackup(root, "Grace", 600000000);
  const std::string firstAlone = ServedBackup(first, Service::Current).Answer(ContentCallHistory);
  const std::string secondAlone = ServedBackup(second, Service::Current).Answer(ContentCallHistory);
  std::vector<std::string> answers(2);
  const auto run = [](const std::string& backup, std::string* answer) {
    for (int round = 0; round < 20; ++round) {
      ServedBackup served(backup, Service::Current);
      *answer = served.Answer(ContentCallHistory) + served.Answer(ContentContact);
      if (answer->empty()) return;
    }
  };
  std::thread one(run, first, &answers[0]);
  std::thread two(run, second, &answers[1]);
  one.join();
  two.join();
  EXPECT_EQ(answers[0], firstAlone + ServedBackup(first, Service::Current).Answer(ContentContact));
  EXPECT_EQ(answers[1], secondAlone + ServedBackup(second, Service::Current).Answer(ContentContact));
  EXPECT_NE(answers[0].find("Ada"), std::string::npos);
  EXPECT_NE(answers[1].find("2020-01-06 05:40:00"), std::string::npos);
}

// Every kind of the sample backups of both index kinds, read from two threads
// at once, answers as it does alone.
TEST(CurrentService, TwoThreadsReadEveryKindOfTwoBackupsAtOnce) {
  TempDir root;
  ScopedTimeZone newYork("America/New_York");
  const std::string backups[] = {sample::Builder(IndexKind::Mbdb).Write(root.Path() + "old"),
                                 sample::Builder(IndexKind::ManifestDb).Write(root.Path() + "new")};
  const auto everything = [](const std::string& backup) {
    ServedBackup served(backup, Service::Current);
    std::string answers;
    for (int type = 0; type <= ContentWhatsAppCalls; ++type) {
      const std::string answer = served.Answer(type);
      EXPECT_NE(answer, "null") << "content type " << type;
      answers += answer + "\n";
    }
    return answers;
  };
  const std::string alone[] = {everything(backups[0]), everything(backups[1])};
  std::string together[2];
  const auto run = [&](int which) {
    for (int round = 0; round < 5; ++round) together[which] = everything(backups[which]);
  };
  std::thread one(run, 0);
  std::thread two(run, 1);
  one.join();
  two.join();
  EXPECT_EQ(together[0], alone[0]);
  EXPECT_EQ(together[1], alone[1]);
}

}  // namespace
}  // namespace yhtest
