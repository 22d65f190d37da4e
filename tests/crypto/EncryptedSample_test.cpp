#include <gtest/gtest.h>

#include "fault/FaultBench.h"
#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/TreeSnapshot.h"

namespace {

using yhtest::IndexKind;

void CollectSkipped(const YHDecryptProgress* progress, void* user) {
  if (progress->skipped) static_cast<std::vector<std::string>*>(user)->push_back(progress->skipped);
}

class EncryptedSample : public ::testing::TestWithParam<IndexKind> {
 protected:
  std::string WritePlain() { return yhtest::sample::Builder(GetParam()).Write(root_.Path() + "plain"); }
  std::string WriteEncrypted(const yhtest::Encryption& encryption) {
    return yhtest::sample::Builder(GetParam()).Encrypt(encryption).Write(root_.Path() + "encrypted");
  }
  // Decrypts into root/copy/; the sample's one file that was not copied is
  // reported as skipped.
  std::string Decrypt(const std::string& encrypted) {
    const std::string copy = root_.Path() + "copy/";
    std::vector<std::string> skipped;
    EXPECT_EQ(DecryptBackup(encrypted.c_str(), copy.c_str(), "secret", CollectSkipped, &skipped),
              YHDecryptedWithGaps);
    const std::string missing =
        yhtest::BackupBuilder(GetParam()).StoredPath("HomeDomain", "Library/Preferences/com.apple.missing.plist");
    EXPECT_EQ(skipped, std::vector<std::string>{missing});
    return copy;
  }
  yhtest::TempDir root_;
};

TEST_P(EncryptedSample, DecryptsToACopyThatAnswersAsThePlainBackup) {
  const std::string plain = WritePlain();
  const std::string encrypted = WriteEncrypted({"secret", 1, 1});
  const std::string before = yhtest::SnapshotTree(encrypted);
  const std::string copy = Decrypt(encrypted);
  EXPECT_EQ(yhtest::SnapshotTree(encrypted), before);
  const auto expected = yhtest::fault::AskEverything(plain);
  const auto answers = yhtest::fault::AskEverything(copy);
  ASSERT_TRUE(answers.found);
  EXPECT_EQ(yhtest::fault::Normalized(answers, copy), yhtest::fault::Normalized(expected, plain));
}

TEST_P(EncryptedSample, DecryptsAnOlderKeyBagOfSha1Only) {
  const std::string plain = WritePlain();
  const std::string encrypted = WriteEncrypted({"secret", 5, 0});
  const std::string copy = Decrypt(encrypted);
  EXPECT_EQ(yhtest::fault::Normalized(yhtest::fault::AskEverything(copy), copy),
            yhtest::fault::Normalized(yhtest::fault::AskEverything(plain), plain));
}

TEST_P(EncryptedSample, EncryptedBackupIsListedAsEncryptedAndItsIndexIsUnreadable) {
  const std::string encrypted = WriteEncrypted({"secret", 1, 1});
  BackupDevice* list = GetBackupDeviceListAt(encrypted.c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->isEncrypted, 1u);
  yhtest::FreeDeviceList(list);
}

TEST_P(EncryptedSample, WrongPasswordsWriteNothing) {
  const std::string encrypted = WriteEncrypted({"secret", 1, 1});
  for (const char* wrong : {"", "Secret", "secret ", "secre"}) {
    const std::string copy = root_.Path() + "copy/";
    EXPECT_EQ(DecryptBackup(encrypted.c_str(), copy.c_str(), wrong, nullptr, nullptr), YHWrongPassword) << wrong;
    EXPECT_FALSE(std::filesystem::exists(copy)) << wrong;
  }
}

TEST_P(EncryptedSample, APlainBackupIsNotDecrypted) {
  const std::string plain = WritePlain();
  const std::string copy = root_.Path() + "copy/";
  EXPECT_EQ(DecryptBackup(plain.c_str(), copy.c_str(), "secret", nullptr, nullptr), YHNotEncrypted);
  EXPECT_FALSE(std::filesystem::exists(copy));
}

INSTANTIATE_TEST_SUITE_P(BothIndexes, EncryptedSample, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return yhtest::fault::IndexName(info.param); });

}  // namespace
