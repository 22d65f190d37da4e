#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "common/FileHelpers.h"
#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/CanonicalPlist.h"
#include "support/DeviceList.h"
#include "support/RealBackups.h"
#include "support/TreeSnapshot.h"

namespace {

struct Skipped {
  std::set<std::string> names;
  uint32_t calls = 0;
  YHDecryptProgress last{};
};

void Collect(const YHDecryptProgress* progress, void* user) {
  auto* skipped = static_cast<Skipped*>(user);
  ++skipped->calls;
  skipped->last = *progress;
  if (progress->skipped) skipped->names.insert(progress->skipped);
}

class RealIos9Decryption : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    out_ = new yhtest::TempDir();
    before_ = new std::string(yhtest::SnapshotTree(yhtest::RealIos9Backup()));
    skipped_ = new Skipped();
    result_ = DecryptBackup(yhtest::RealIos9Backup().c_str(), (out_->Path() + "plain").c_str(), "20201225",
                            Collect, skipped_);
  }
  void SetUp() override { YH_NEEDS_ENCRYPTED_REAL(); }
  static void TearDownTestSuite() {
    delete out_;
    delete before_;
    delete skipped_;
  }
  static std::string Plain() { return out_->Path() + "plain/"; }

  static yhtest::TempDir* out_;
  static std::string* before_;
  static Skipped* skipped_;
  static int32_t result_;
};

yhtest::TempDir* RealIos9Decryption::out_ = nullptr;
std::string* RealIos9Decryption::before_ = nullptr;
Skipped* RealIos9Decryption::skipped_ = nullptr;
int32_t RealIos9Decryption::result_ = -1;

TEST_F(RealIos9Decryption, ReportsTheOneMissingFileAndDecryptsTheRest) {
  EXPECT_EQ(result_, YHDecryptedWithGaps);
  EXPECT_EQ(skipped_->names, std::set<std::string>{"a373976c636b12aaf1acc0677a5544159e0e9100"});
  EXPECT_EQ(skipped_->last.filesDone, skipped_->last.filesTotal);
  EXPECT_EQ(skipped_->last.bytesDone, skipped_->last.bytesTotal);
  EXPECT_EQ(skipped_->calls, skipped_->last.filesTotal);
}

TEST_F(RealIos9Decryption, GivesThePublishedHashOfEveryFile) {
  std::ifstream in(yhtest::EncryptedRealDir() + "hv20_ios9_mbdb/expected_from_independent_decryption.json");
  const nlohmann::json expected = nlohmann::json::parse(in);
  int compared = 0;
  for (const auto& [name, file] : expected["files"].items()) {
    const std::string kind = file["kind"];
    if (kind == "skip") continue;
    const std::string bytes = yhtest::ReadBytes(Plain() + file["fileID"].get<std::string>());
    if (kind == "bytes") {
      EXPECT_EQ(yhtest::Sha256Hex(bytes), file["sha256"]) << name;
      EXPECT_EQ(bytes.size(), file["size"].get<size_t>()) << name;
    } else {
      EXPECT_EQ(yhtest::Sha256Hex(yhtest::CanonicalPlistJson(bytes)), file["sha256"]) << name;
    }
    ++compared;
  }
  EXPECT_EQ(compared, 288);
}

TEST_F(RealIos9Decryption, WritesAPlainBackupThatTheServiceReads) {
  EXPECT_FALSE(VQIsFileExists((Plain() + "Manifest.mbdb.partial").c_str()));
  BackupDevice* list = GetBackupDeviceListAt(Plain().c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->isEncrypted, 0u);
  iDeviceBackupService* service = CreateDataRecoveryService();
  EXPECT_EQ(service->AnalyzeBackup(list), 1);
  plist_t contacts = service->GetContentList(list, ContentContact);
  ASSERT_NE(contacts, nullptr);
  EXPECT_GT(plist_array_get_size(contacts), 0u);
  plist_free(contacts);
  yhtest::FreeDeviceList(list);
  FreeiDeviceBackupService(service);
}

TEST_F(RealIos9Decryption, LeavesTheBackupUntouched) {
  EXPECT_EQ(yhtest::SnapshotTree(yhtest::RealIos9Backup()), *before_);
}

TEST(RealDecryption, AWrongPasswordWritesNothing) {
  YH_NEEDS_ENCRYPTED_REAL();
  yhtest::TempDir out;
  EXPECT_EQ(DecryptBackup(yhtest::RealIos9Backup().c_str(), (out.Path() + "plain").c_str(), "20201226", nullptr,
                          nullptr),
            YHWrongPassword);
  EXPECT_FALSE(VQIsFileExists((out.Path() + "plain").c_str()));
}

TEST(RealDecryption, RefusesAFolderThatIsNotEmpty) {
  YH_NEEDS_ENCRYPTED_REAL();
  yhtest::TempDir out;
  yhtest::WriteFile(out.Path() + "keep.txt", "mine");
  EXPECT_EQ(DecryptBackup(yhtest::RealTinyMbdb().c_str(), out.Path().c_str(), "0000", nullptr, nullptr),
            YHOutputNotEmpty);
  EXPECT_EQ(yhtest::ReadBytes(out.Path() + "keep.txt"), "mine");
}

TEST(RealDecryption, TheSmallMbdbBackupGivesItsOneFile) {
  YH_NEEDS_ENCRYPTED_REAL();
  yhtest::TempDir out;
  ASSERT_EQ(DecryptBackup(yhtest::RealTinyMbdb().c_str(), out.Path().c_str(), "0000", nullptr, nullptr), YHUnlocked);
  EXPECT_EQ(yhtest::ReadBytes(out.Path() + "5727bd1c5fa1055e15d8b4a75a74793c84b5ffdc"), "Test data");
}

// The one backup of ten million iterations in the default run.
TEST(RealDecryption, TheSmallManifestDbBackupGivesItsOneFile) {
  YH_NEEDS_ENCRYPTED_REAL();
  yhtest::TempDir out;
  ASSERT_EQ(DecryptBackup(yhtest::RealTinyManifestDb().c_str(), out.Path().c_str(), "0000", nullptr, nullptr),
            YHUnlocked);
  EXPECT_EQ(yhtest::ReadBytes(out.Path() + "57/5727bd1c5fa1055e15d8b4a75a74793c84b5ffdc"), "Test data");
  EXPECT_EQ(yhtest::ReadBytes(out.Path() + "Manifest.db").size(), 8192u);
  BackupDevice* list = GetBackupDeviceListAt(out.Path().c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->isEncrypted, 0u);
  iDeviceBackupService* service = CreateDataRecoveryService();
  EXPECT_EQ(service->AnalyzeBackup(list), 1);
  yhtest::FreeDeviceList(list);
  FreeiDeviceBackupService(service);
}

}  // namespace
