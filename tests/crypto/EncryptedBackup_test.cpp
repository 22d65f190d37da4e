#include "crypto/EncryptedBackup.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <sstream>

#include "fault/SampleBackup.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/TreeSnapshot.h"

namespace {

using yhtest::IndexKind;

const char kContacts[] = "Library/AddressBook/AddressBook.sqlitedb";

class InPlace : public ::testing::TestWithParam<IndexKind> {
 protected:
  void SetUp() override {
    plain_ = yhtest::sample::Builder(GetParam()).Write(root_.Path() + "plain");
    backup_ = yhtest::sample::Builder(GetParam()).Encrypt({"pw", 1, 1}).Write(root_.Path() + "enc");
    platform::MakePrivateFolder(root_.Path() + "private");
    std::unique_ptr<BackupKeys> keys;
    ASSERT_EQ(BackupKeys::Open(backup_, "pw", &keys), BackupKeys::Unlock::Unlocked);
    encrypted_ = std::make_unique<EncryptedBackup>(std::move(keys), backup_, root_.Path() + "private/");
  }
  std::string Stored(const char* path) const { return yhtest::BackupBuilder(GetParam()).StoredPath("HomeDomain", path); }
  std::optional<StoredKey> KeyOf(const char* path) {
    if (GetParam() == IndexKind::ManifestDb) return encrypted_->ManifestDbKey(yhtest::BackupBuilder::FileId("HomeDomain", path));
    return std::nullopt;
  }

  yhtest::TempDir root_;
  std::string plain_;
  std::string backup_;
  std::unique_ptr<EncryptedBackup> encrypted_;
};

TEST_P(InPlace, DecryptsAStoredFileOnceIntoThePrivateFolder) {
  if (GetParam() == IndexKind::Mbdb) GTEST_SKIP() << "Manifest.mbdb keys come from the index reader";
  const std::string before = yhtest::SnapshotTree(backup_);
  const std::string copy = encrypted_->StoredFileCopy(Stored(kContacts), KeyOf(kContacts));
  ASSERT_FALSE(copy.empty());
  EXPECT_EQ(copy.rfind(root_.Path() + "private/", 0), 0u);
  EXPECT_EQ(yhtest::ReadBytes(copy), yhtest::ReadBytes(plain_ + Stored(kContacts)));
  EXPECT_EQ(encrypted_->StoredFileCopy(Stored(kContacts), std::nullopt), copy);
  EXPECT_EQ(yhtest::SnapshotTree(backup_), before);
}

TEST_P(InPlace, AFileWithoutKeyOrStoredFileHasNoCopy) {
  EXPECT_EQ(encrypted_->StoredFileCopy(Stored(kContacts), std::nullopt), "");
  EXPECT_EQ(encrypted_->StoredFileCopy(Stored("Library/Preferences/com.apple.missing.plist"),
                                       KeyOf("Library/Preferences/com.apple.missing.plist")),
            "");
}

TEST_P(InPlace, TheIndexCopyIsThePlainIndex) {
  if (GetParam() == IndexKind::Mbdb) GTEST_SKIP() << "Manifest.mbdb is not encrypted";
  const std::string copy = encrypted_->ManifestDbCopy();
  ASSERT_FALSE(copy.empty());
  Database database(copy);
  Database::Statement rows(database, "select count(*) from Files");
  ASSERT_TRUE(rows.Step());
  EXPECT_GT(std::stoi(rows.Text(0)), 10);
}

INSTANTIATE_TEST_SUITE_P(BothIndexes, InPlace, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return info.param == IndexKind::Mbdb ? "Mbdb" : "ManifestDb"; });

TEST(MbdbKey, ReadsTheHexTextOfTheIndexReader) {
  const auto key = EncryptedBackup::MbdbKey("04000000" + std::string(80, 'A'));
  ASSERT_TRUE(key);
  EXPECT_EQ(key->protectionClass, 4u);
  EXPECT_EQ(key->wrappedKey, std::string(40, '\xAA'));
  EXPECT_FALSE(EncryptedBackup::MbdbKey("0400"));
  EXPECT_FALSE(EncryptedBackup::MbdbKey("04000000AG"));
  EXPECT_FALSE(EncryptedBackup::MbdbKey("040"));
}

}  // namespace
