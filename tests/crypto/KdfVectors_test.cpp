#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

#include "crypto/KeyBag.h"
#include "crypto/KeyWrap.h"
#include "crypto/PasswordKey.h"
#include "support/RealBackups.h"

namespace {

struct Vector {
  std::string name;
  std::string password;
  KeyBag bag;
  std::string wrappedKey;
};

std::string FromHex(const std::string& hex) {
  std::string bytes;
  for (size_t i = 0; i + 1 < hex.size(); i += 2) bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  return bytes;
}

// "$itunes_backup$*VERSION*WPKY*ITER*SALT*DPIC*DPSL"
Vector Parse(const nlohmann::json& entry) {
  std::vector<std::string> fields;
  std::stringstream hash(entry["hash"].get<std::string>());
  for (std::string field; std::getline(hash, field, '*');) fields.push_back(field);
  fields.resize(7);
  Vector vector;
  vector.name = entry["name"];
  vector.password = entry["password"];
  vector.wrappedKey = FromHex(fields[2]);
  vector.bag.iterations = static_cast<uint32_t>(std::stoul(fields[3]));
  vector.bag.salt = FromHex(fields[4]);
  if (fields[1] == "10") {
    vector.bag.doubleProtectionIterations = static_cast<uint32_t>(std::stoul(fields[5]));
    vector.bag.doubleProtectionSalt = FromHex(fields[6]);
  }
  return vector;
}

std::vector<Vector> Vectors() {
  std::ifstream in(yhtest::EncryptedRealDir() + "kdf_vectors.json");
  const nlohmann::json file = nlohmann::json::parse(in);
  std::vector<Vector> vectors;
  for (const auto& entry : file["vectors"]) vectors.push_back(Parse(entry));
  return vectors;
}

bool IsSlow(const Vector& vector) { return vector.bag.doubleProtectionIterations > 100000; }

bool Unwraps(const Vector& vector, const std::string& password) {
  return !UnwrapKey(DerivePasswordKey(vector.bag, password), vector.wrappedKey).Empty();
}

TEST(KdfVectors, EveryQuickVectorUnwrapsWithItsPasswordAndNoOther) {
  YH_NEEDS_ENCRYPTED_REAL();
  int checked = 0;
  for (const Vector& vector : Vectors()) {
    if (IsSlow(vector)) continue;
    EXPECT_TRUE(Unwraps(vector, vector.password)) << vector.name;
    EXPECT_FALSE(Unwraps(vector, vector.password + "x")) << vector.name;
    EXPECT_FALSE(Unwraps(vector, "")) << vector.name;
    ++checked;
  }
  EXPECT_EQ(checked, 4);
}

// Two derivations of ten million iterations each per vector: run with
// YH_SLOW_TESTS=1 (CI does, once). The default run derives ten million
// iterations once, in RealDecryption.TheSmallManifestDbBackupGivesItsOneFile.
TEST(KdfVectors, EverySlowVectorUnwrapsWithItsPasswordAndNoOther) {
  YH_NEEDS_ENCRYPTED_REAL();
  if (!std::getenv("YH_SLOW_TESTS")) GTEST_SKIP() << "set YH_SLOW_TESTS=1";
  int checked = 0;
  for (const Vector& vector : Vectors()) {
    if (!IsSlow(vector)) continue;
    EXPECT_TRUE(Unwraps(vector, vector.password)) << vector.name;
    EXPECT_FALSE(Unwraps(vector, vector.password + "x")) << vector.name;
    ++checked;
  }
  EXPECT_EQ(checked, 4);
}

}  // namespace
