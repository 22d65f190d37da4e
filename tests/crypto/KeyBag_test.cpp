#include "crypto/KeyBag.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "common/PlistHelpers.h"
#include "support/RealBackups.h"

namespace {

std::string KeyBagOf(const std::string& backup) {
  plist_t manifest = ReadPlist((backup + "Manifest.plist").c_str());
  char* bytes = nullptr;
  uint64_t length = 0;
  plist_get_data_val(plist_dict_get_item(manifest, "BackupKeyBag"), &bytes, &length);
  std::string bag(bytes, length);
  free(bytes);
  plist_free(manifest);
  return bag;
}

std::string Base64Decode(const std::string& text) {
  static const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  uint32_t bits = 0;
  int count = 0;
  for (char c : text) {
    const size_t value = kAlphabet.find(c);
    if (value == std::string::npos) continue;
    bits = bits << 6 | static_cast<uint32_t>(value);
    if ((count += 6) >= 8) {
      count -= 8;
      out.push_back(static_cast<char>(bits >> count & 0xFF));
    }
  }
  return out;
}

TEST(KeyBag, ReadsTheRealIos9BagWithTenThousandSha1Iterations) {
  YH_NEEDS_ENCRYPTED_REAL();
  const auto bag = ParseKeyBag(KeyBagOf(yhtest::RealIos9Backup()));
  ASSERT_TRUE(bag);
  EXPECT_EQ(bag->version, 3u);
  EXPECT_EQ(bag->iterations, 10000u);
  EXPECT_EQ(bag->salt.size(), 20u);
  EXPECT_FALSE(bag->HasDoubleProtection());
  ASSERT_EQ(bag->classKeys.size(), 11u);
  for (size_t i = 0; i < bag->classKeys.size(); ++i) {
    EXPECT_EQ(bag->classKeys[i].protectionClass, 11 - i);
    EXPECT_EQ(bag->classKeys[i].wrappedKey.size(), 40u);
  }
  EXPECT_EQ(bag->classKeys[0].wrap, 3u);
  EXPECT_EQ(bag->classKeys[3].wrap, 2u);
}

TEST(KeyBag, ReadsTheVersion5BagWithItsSha256Stage) {
  YH_NEEDS_ENCRYPTED_REAL();
  const auto bag = ParseKeyBag(KeyBagOf(yhtest::RealTinyManifestDb()));
  ASSERT_TRUE(bag);
  EXPECT_EQ(bag->version, 5u);
  EXPECT_TRUE(bag->HasDoubleProtection());
  EXPECT_EQ(bag->doubleProtectionIterations, 10000000u);
  EXPECT_EQ(bag->iterations, 10000u);
}

TEST(KeyBag, KeepsAStrayClassAsItsOwnEntry) {
  YH_NEEDS_ENCRYPTED_REAL();
  const auto bag = ParseKeyBag(KeyBagOf(yhtest::RealTinyMbdb()));
  ASSERT_TRUE(bag);
  std::set<uint32_t> classes;
  for (const auto& key : bag->classKeys) classes.insert(key.protectionClass);
  EXPECT_EQ(classes.count(16), 1u);
  EXPECT_EQ(classes.count(10), 0u);
}

TEST(KeyBag, ReadsARecentDevicesLayout) {
  YH_NEEDS_ENCRYPTED_REAL();
  std::ifstream in(yhtest::EncryptedRealDir() + "real_keybag_vers5_layout.json");
  const nlohmann::json layout = nlohmann::json::parse(in);
  const auto bag = ParseKeyBag(Base64Decode(layout["keybag_base64"].get<std::string>()));
  ASSERT_TRUE(bag);
  EXPECT_EQ(bag->version, 5u);
  ASSERT_EQ(bag->classKeys.size(), 11u);
  EXPECT_EQ(bag->classKeys.front().protectionClass, 1u);
  EXPECT_EQ(bag->classKeys.back().protectionClass, 11u);
}

TEST(KeyBag, RefusesCutAndEmptyBags) {
  YH_NEEDS_ENCRYPTED_REAL();
  const std::string whole = KeyBagOf(yhtest::RealIos9Backup());
  EXPECT_FALSE(ParseKeyBag(""));
  for (size_t cut : {size_t{3}, size_t{8}, size_t{40}, whole.size() / 2, whole.size() - 1}) {
    EXPECT_FALSE(ParseKeyBag(whole.substr(0, cut))) << cut;
  }
}

TEST(KeyBag, RefusesALengthBeyondTheEnd) {
  YH_NEEDS_ENCRYPTED_REAL();
  std::string bag = KeyBagOf(yhtest::RealIos9Backup());
  bag[4] = '\x7F';
  EXPECT_FALSE(ParseKeyBag(bag));
}

TEST(KeyBag, RefusesAClassKeyOfTheWrongSize) {
  YH_NEEDS_ENCRYPTED_REAL();
  std::string bag = KeyBagOf(yhtest::RealIos9Backup());
  const size_t wpky = bag.rfind("WPKY");
  bag[wpky + 7] = 39;
  bag.erase(wpky + 8, 1);
  EXPECT_FALSE(ParseKeyBag(bag));
}

}  // namespace
