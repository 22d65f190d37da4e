#include <gtest/gtest.h>
#include <plist/plist.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "crypto/MbdbEntries.h"
#include "fault/SampleBackup.h"
#include "libYH.h"
#include "support/BackupBuilder.h"

namespace {

using yhtest::IndexKind;

void CollectSkipped(const YHDecryptProgress* progress, void* user) {
  if (progress->skipped) static_cast<std::vector<std::string>*>(user)->push_back(progress->skipped);
}

// Changes one data value of Manifest.plist.
void EditManifestData(const std::string& backup, const char* key, void (*edit)(std::string*)) {
  const std::string path = backup + "Manifest.plist";
  const std::string bytes = yhtest::ReadBytes(path);
  plist_t manifest = nullptr;
  plist_from_bin(bytes.data(), static_cast<uint32_t>(bytes.size()), &manifest);
  char* data = nullptr;
  uint64_t length = 0;
  plist_get_data_val(plist_dict_get_item(manifest, key), &data, &length);
  std::string value(data, length);
  free(data);
  edit(&value);
  plist_dict_set_item(manifest, key, plist_new_data(value.data(), value.size()));
  char* out = nullptr;
  uint32_t outLength = 0;
  plist_to_bin(manifest, &out, &outLength);
  yhtest::WriteFile(path, std::string(out, outLength));
  plist_to_bin_free(out);
  plist_free(manifest);
}

const char kContacts[] = "Library/AddressBook/AddressBook.sqlitedb";

class EncryptedDamage : public ::testing::TestWithParam<IndexKind> {
 protected:
  void SetUp() override {
    backup_ = yhtest::sample::Builder(GetParam()).Encrypt({"pw", 1, 1}).Write(root_.Path() + "enc");
  }
  int32_t Decrypt(const std::string& password = "pw") {
    skipped_.clear();
    return DecryptBackup(backup_.c_str(), Copy().c_str(), password.c_str(), CollectSkipped, &skipped_);
  }
  std::string Copy() const { return root_.Path() + "copy/"; }
  std::string Stored(const std::string& path) const {
    return yhtest::BackupBuilder(GetParam()).StoredPath("HomeDomain", path);
  }
  // The sample's file that was not copied is always skipped; these are the others.
  std::vector<std::string> OtherSkipped() const {
    std::vector<std::string> others;
    for (const std::string& name : skipped_) {
      if (name != Stored("Library/Preferences/com.apple.missing.plist")) others.push_back(name);
    }
    return others;
  }

  yhtest::TempDir root_;
  std::string backup_;
  std::vector<std::string> skipped_;
};

TEST_P(EncryptedDamage, ACutKeyBagIsDamagedAndWritesNothing) {
  EditManifestData(backup_, "BackupKeyBag", [](std::string* bag) { bag->resize(bag->size() - 7); });
  EXPECT_EQ(Decrypt(), YHKeyBagDamaged);
  EXPECT_FALSE(std::filesystem::exists(Copy()));
}

TEST_P(EncryptedDamage, ADamagedClassKeyIsADamagedKeyBag) {
  EditManifestData(backup_, "BackupKeyBag", [](std::string* bag) { (*bag)[bag->rfind("WPKY") + 20] ^= 1; });
  EXPECT_EQ(Decrypt(), YHKeyBagDamaged);
}

TEST_P(EncryptedDamage, AMissingKeyBagIsDamaged) {
  EditManifestData(backup_, "BackupKeyBag", [](std::string* bag) { bag->clear(); });
  EXPECT_EQ(Decrypt(), YHKeyBagDamaged);
}

TEST_P(EncryptedDamage, ACutStoredFileIsSkippedAndTheRestDecrypted) {
  const std::string stored = backup_ + Stored(kContacts);
  const std::string bytes = yhtest::ReadBytes(stored);
  yhtest::WriteFile(stored, bytes.substr(0, bytes.size() - 5));
  EXPECT_EQ(Decrypt(), YHDecryptedWithGaps);
  EXPECT_EQ(OtherSkipped(), std::vector<std::string>{Stored(kContacts)});
  EXPECT_FALSE(std::filesystem::exists(Copy() + Stored(kContacts)));
  EXPECT_FALSE(std::filesystem::exists(Copy() + Stored(kContacts) + ".partial"));
  EXPECT_TRUE(std::filesystem::exists(Copy() + "Manifest.plist"));
}

TEST_P(EncryptedDamage, AWrongPasswordIsNoDamage) { EXPECT_EQ(Decrypt("Pw"), YHWrongPassword); }

INSTANTIATE_TEST_SUITE_P(BothIndexes, EncryptedDamage, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return info.param == IndexKind::Mbdb ? "Mbdb" : "ManifestDb"; });

// Rewrites one record of a Manifest.mbdb with another key field.
void RekeyMbdbRecord(const std::string& backup, const std::string& path, void (*edit)(std::string*)) {
  const std::string index = yhtest::ReadBytes(backup + "Manifest.mbdb");
  auto entries = ReadMbdbEntries(index);
  ASSERT_TRUE(entries);
  std::string out = index.substr(0, 6);
  for (MbdbEntry& entry : *entries) {
    if (entry.path == path) edit(&entry.encryptionKey);
    const std::string& key = entry.encryptionKey;
    const std::string length = key.empty() ? std::string("\xFF\xFF", 2)
                                           : std::string{static_cast<char>(key.size() >> 8),
                                                         static_cast<char>(key.size() & 0xFF)};
    out += entry.head + length + key + entry.fixedBlock + entry.properties;
  }
  yhtest::WriteFile(backup + "Manifest.mbdb", out);
}

TEST(EncryptedMbdbDamage, AFileWhoseKeyIsDamagedOrMissingIsSkipped) {
  for (auto edit : {+[](std::string* key) { (*key)[20] ^= 1; }, +[](std::string* key) { key->clear(); },
                    +[](std::string* key) { (*key)[0] = 9; }}) {
    yhtest::TempDir root;
    const std::string backup =
        yhtest::sample::Builder(IndexKind::Mbdb).Encrypt({"pw", 1, 0}).Write(root.Path() + "enc");
    RekeyMbdbRecord(backup, kContacts, edit);
    std::vector<std::string> skipped;
    EXPECT_EQ(DecryptBackup(backup.c_str(), (root.Path() + "copy").c_str(), "pw", CollectSkipped, &skipped),
              YHDecryptedWithGaps);
    // Two files are decrypted at a time, so the skipped ones come in either order.
    EXPECT_EQ(skipped.size(), 2u);
    const std::string contacts = yhtest::BackupBuilder(IndexKind::Mbdb).StoredPath("HomeDomain", kContacts);
    EXPECT_NE(std::find(skipped.begin(), skipped.end(), contacts), skipped.end());
  }
}

TEST(EncryptedManifestDbDamage, ADamagedManifestKeyIsADamagedKeyBag) {
  yhtest::TempDir root;
  const std::string backup =
      yhtest::sample::Builder(IndexKind::ManifestDb).Encrypt({"pw", 1, 1}).Write(root.Path() + "enc");
  EditManifestData(backup, "ManifestKey", [](std::string* key) { (*key)[10] ^= 1; });
  EXPECT_EQ(DecryptBackup(backup.c_str(), (root.Path() + "copy").c_str(), "pw", nullptr, nullptr), YHKeyBagDamaged);
  EXPECT_FALSE(std::filesystem::exists(root.Path() + "copy/Manifest.db"));
  EXPECT_FALSE(std::filesystem::exists(root.Path() + "copy/Manifest.plist"));
}

}  // namespace
