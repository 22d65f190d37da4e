#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "fault/FaultBench.h"
#include "libYH.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/RealBackups.h"
#include "support/ScopedEnv.h"
#include "support/SystemFiles.h"
#include "support/TreeSnapshot.h"

namespace {

namespace fs = std::filesystem;
using yhtest::IndexKind;

std::string Contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

// Every answer of one backup read through a service, each content type
// twice, with the "path" texts in the order they appear.
struct Reading {
  int32_t unlock = -1;
  bool analysed = false;
  std::vector<std::string> dumps;
  std::vector<std::string> paths;
};

using CreateService = iDeviceBackupService* (*)();

// Reads the backup as a host does; `password` NULL reads it without unlocking.
// `inspect` sees the record after the answers, before it is freed.
Reading Read(CreateService create, const std::string& folder, const char* password,
             const std::function<void(const Reading&)>& inspect = nullptr) {
  Reading reading;
  iDeviceBackupService* service = create();
  BackupDevice* list = GetBackupDeviceListAt(folder.c_str());
  if (list) {
    if (password) reading.unlock = UnlockBackup(list, password);
    reading.analysed = service->AnalyzeBackup(list) == 1;
    for (int round = 0; round < 2; ++round) {
      for (int type = 0; type < yhtest::fault::kContentTypes; ++type) {
        plist_t answer = service->GetContentList(list, static_cast<iDeviceContentType>(type));
        if (round == 0) yhtest::fault::CollectPaths(answer, &reading.paths);
        reading.dumps.push_back(yhtest::DumpAndFree(answer));
      }
    }
    if (inspect) inspect(reading);
  }
  yhtest::FreeDeviceList(list);
  FreeiDeviceBackupService(service);
  return reading;
}

// The dumps with each path of `from` replaced by the matching path of `to`.
std::vector<std::string> WithPaths(std::vector<std::string> dumps, const std::vector<std::string>& from,
                                   const std::vector<std::string>& to) {
  for (std::string& dump : dumps) {
    for (size_t i = 0; i < from.size() && i < to.size(); ++i) {
      if (from[i].empty()) continue;
      for (size_t at = dump.find(from[i]); at != std::string::npos; at = dump.find(from[i], at + to[i].size())) {
        dump.replace(at, from[i].size(), to[i]);
      }
    }
  }
  return dumps;
}

class UnlockBackupTest : public ::testing::TestWithParam<IndexKind> {
 protected:
  UnlockBackupTest() : tmp_(yhtest::TemporaryFolderVariable(), temporary_.Path()) {}

  std::string WritePlain() { return yhtest::sample::Builder(GetParam()).Write(root_.Path() + "plain"); }
  std::string WriteEncrypted() {
    return yhtest::sample::Builder(GetParam()).Encrypt({"secret", 1, 1}).Write(root_.Path() + "encrypted");
  }
  // The private folders the library made in the temporary folder.
  std::vector<std::string> PrivateFolders() const {
    std::vector<std::string> folders;
    for (const auto& entry : fs::directory_iterator(temporary_.Path())) folders.push_back(entry.path().string());
    return folders;
  }

  yhtest::TempDir root_;
  yhtest::TempDir temporary_;
  yhtest::ScopedEnv tmp_;
};

TEST_P(UnlockBackupTest, BothServicesAnswerAsOnThePlainBackupButForMediaPaths) {
  const std::string plain = WritePlain();
  const std::string encrypted = WriteEncrypted();
  const std::string before = yhtest::SnapshotTree(encrypted);
  for (CreateService create : {CreateDataRecoveryService, CreateCurrentDataRecoveryService}) {
    const Reading expected = Read(create, plain, nullptr);
    // The copies go with the record, so they are compared while it lives.
    const Reading reading = Read(create, encrypted, "secret", [&](const Reading& reading) {
      ASSERT_EQ(PrivateFolders().size(), 1u);
      ASSERT_EQ(reading.paths.size(), expected.paths.size());
      for (size_t i = 0; i < reading.paths.size(); ++i) {
        if (reading.paths[i].empty()) continue;
        EXPECT_EQ(reading.paths[i].compare(0, PrivateFolders()[0].size(), PrivateFolders()[0]), 0) << reading.paths[i];
        if (fs::is_regular_file(expected.paths[i])) {
          EXPECT_EQ(Contents(reading.paths[i]), Contents(expected.paths[i])) << expected.paths[i];
        }
      }
    });
    EXPECT_EQ(reading.unlock, YHUnlocked);
    EXPECT_TRUE(reading.analysed);
    EXPECT_FALSE(reading.paths.empty());
    EXPECT_EQ(WithPaths(reading.dumps, reading.paths, expected.paths), expected.dumps);
    EXPECT_TRUE(PrivateFolders().empty());
  }
  EXPECT_EQ(yhtest::SnapshotTree(encrypted), before);
}

TEST_P(UnlockBackupTest, TheHostChoosesWhereThePrivateFolderGoes) {
  const std::string encrypted = WriteEncrypted();
  const std::string chosen = root_.Path() + "chosen";
  fs::create_directory(chosen);
  const auto inChosen = [&] { return std::distance(fs::directory_iterator(chosen), fs::directory_iterator()); };
  iDeviceBackupService* service = CreateCurrentDataRecoveryService();
  BackupDevice* list = GetBackupDeviceListAt(encrypted.c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(SetTemporaryFolder(nullptr, chosen.c_str()), 0);
  EXPECT_EQ(SetTemporaryFolder(list, nullptr), 0);
  EXPECT_EQ(SetTemporaryFolder(list, "relative/folder"), 0);
  ASSERT_EQ(SetTemporaryFolder(list, chosen.c_str()), 1);
  ASSERT_EQ(UnlockBackup(list, "secret"), YHUnlocked);
  ASSERT_EQ(service->AnalyzeBackup(list), 1);
  plist_t messages = service->GetContentList(list, ContentSms);
  EXPECT_NE(messages, nullptr);
  plist_free(messages);
  EXPECT_TRUE(PrivateFolders().empty());
  EXPECT_EQ(inChosen(), 1);
  yhtest::FreeDeviceList(list);
  EXPECT_EQ(inChosen(), 0);
  FreeiDeviceBackupService(service);
}

TEST_P(UnlockBackupTest, ThePrivateFolderIsTheOwnersAloneAndFilesAreDecryptedWhenFirstAskedFor) {
  const std::string encrypted = WriteEncrypted();
  iDeviceBackupService* service = CreateCurrentDataRecoveryService();
  BackupDevice* list = GetBackupDeviceListAt(encrypted.c_str());
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(UnlockBackup(list, "secret"), YHUnlocked);
  ASSERT_EQ(PrivateFolders().size(), 1u);
  platform::PathInfo status;
  ASSERT_TRUE(platform::Stat(PrivateFolders()[0], &status));
  if (yhtest::HasModes()) { EXPECT_EQ(status.permissions & 0777, 0700u); }
  auto fileCount = [&] {
    size_t count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(PrivateFolders()[0])) count += entry.is_regular_file();
    return count;
  };
  EXPECT_EQ(fileCount(), 0u);
  ASSERT_EQ(service->AnalyzeBackup(list), 1);
  const size_t indexOnly = fileCount();
  EXPECT_EQ(indexOnly, GetParam() == IndexKind::ManifestDb ? 1u : 0u);
  plist_free(service->GetContentList(list, ContentCallHistory));
  const size_t withCalls = fileCount();
  EXPECT_GT(withCalls, indexOnly);
  plist_free(service->GetContentList(list, ContentCallHistory));
  EXPECT_EQ(fileCount(), withCalls);
  yhtest::FreeDeviceList(list);
  FreeiDeviceBackupService(service);
  EXPECT_TRUE(PrivateFolders().empty());
}

TEST_P(UnlockBackupTest, AWrongPasswordLeavesTheBackupLocked) {
  const std::string encrypted = WriteEncrypted();
  for (const char* wrong : {"", "Secret", "secret "}) {
    const Reading reading = Read(CreateCurrentDataRecoveryService, encrypted, wrong);
    EXPECT_EQ(reading.unlock, YHWrongPassword) << wrong;
    if (GetParam() == IndexKind::ManifestDb) {
      EXPECT_FALSE(reading.analysed) << wrong;
    }
    EXPECT_TRUE(PrivateFolders().empty());
  }
}

TEST_P(UnlockBackupTest, APlainBackupIsNotEncrypted) {
  const std::string plain = WritePlain();
  const Reading expected = Read(CreateCurrentDataRecoveryService, plain, nullptr);
  const Reading reading = Read(CreateCurrentDataRecoveryService, plain, "secret");
  EXPECT_EQ(reading.unlock, YHNotEncrypted);
  EXPECT_EQ(reading.dumps, expected.dumps);
}

TEST_P(UnlockBackupTest, AMissingKeyBagIsDamaged) {
  const std::string encrypted = WriteEncrypted();
  BackupDevice* list = GetBackupDeviceListAt(encrypted.c_str());
  ASSERT_NE(list, nullptr);
  fs::remove(encrypted + "Manifest.plist");
  EXPECT_EQ(UnlockBackup(list, "secret"), YHKeyBagDamaged);
  yhtest::FreeDeviceList(list);
}

TEST_P(UnlockBackupTest, NoRecordOrNoPasswordIsNoBackup) {
  const std::string encrypted = WriteEncrypted();
  EXPECT_EQ(UnlockBackup(nullptr, "secret"), YHNoBackup);
  BackupDevice* list = GetBackupDeviceListAt(encrypted.c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(UnlockBackup(list, nullptr), YHNoBackup);
  yhtest::FreeDeviceList(list);
}

TEST_P(UnlockBackupTest, TheCopiesGoAlsoAfterAFailedAnalysis) {
  const std::string encrypted = WriteEncrypted();
  iDeviceBackupService* service = CreateDataRecoveryService();
  BackupDevice* list = GetBackupDeviceListAt(encrypted.c_str());
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(UnlockBackup(list, "secret"), YHUnlocked);
  const std::string index = GetParam() == IndexKind::ManifestDb ? "Manifest.db" : "Manifest.mbdb";
  fs::rename(encrypted + index, root_.Path() + "index");
  EXPECT_EQ(service->AnalyzeBackup(list), 0);
  EXPECT_EQ(PrivateFolders().size(), 1u);
  yhtest::FreeDeviceList(list);
  FreeiDeviceBackupService(service);
  EXPECT_TRUE(PrivateFolders().empty());
}

// The real iOS 9 device's backup read in place answers, with either service,
// as the plain copy DecryptBackup writes of it; its one missing stored file
// (a camera video) is left out of the photos without failing the rest. The
// device kept contacts and pictures, an empty call store and no messages.
TEST(UnlockRealBackup, BothServicesAnswerInPlaceAsOnItsDecryptedCopy) {
  YH_NEEDS_ENCRYPTED_REAL();
  yhtest::TempDir out;
  const std::string plain = out.Path() + "plain/";
  ASSERT_EQ(DecryptBackup(yhtest::RealIos9Backup().c_str(), plain.c_str(), "20201225", nullptr, nullptr),
            YHDecryptedWithGaps);
  const std::string before = yhtest::SnapshotTree(yhtest::RealIos9Backup());
  for (CreateService create : {CreateDataRecoveryService, CreateCurrentDataRecoveryService}) {
    const Reading expected = Read(create, plain, nullptr);
    const Reading reading = Read(create, yhtest::RealIos9Backup(), "20201225");
    EXPECT_EQ(reading.unlock, YHUnlocked);
    EXPECT_TRUE(reading.analysed);
    // The described service dates undated bookmarks and events by the time of
    // the run, so those answers of two readings may differ by a second.
    const std::vector<std::string> dumps = WithPaths(reading.dumps, reading.paths, expected.paths);
    ASSERT_EQ(dumps.size(), expected.dumps.size());
    for (size_t i = 0; i < dumps.size(); ++i) {
      const int type = static_cast<int>(i) % yhtest::fault::kContentTypes;
      const bool runTime = type == ContentSafariHistory || type == ContentCalendarEvent ||
                           type == ContentCalendarReminder;
      if (create == CreateCurrentDataRecoveryService || !runTime) {
        EXPECT_EQ(dumps[i], expected.dumps[i]) << type;
      }
    }
    for (int type : {ContentContact, ContentCameraPhoto}) {
      EXPECT_NE(reading.dumps[static_cast<size_t>(type)], "null") << type;
      EXPECT_NE(reading.dumps[static_cast<size_t>(type)], "[]") << type;
    }
  }
  EXPECT_EQ(yhtest::SnapshotTree(yhtest::RealIos9Backup()), before);
}

INSTANTIATE_TEST_SUITE_P(BothIndexes, UnlockBackupTest, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return yhtest::fault::IndexName(info.param); });

}  // namespace
