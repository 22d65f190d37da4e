#ifndef YH_TOOL_TESTS_ENCRYPTEDSAMPLES_H
#define YH_TOOL_TESTS_ENCRYPTEDSAMPLES_H

#include <gtest/gtest.h>

#include <string>

#include "fault/SampleBackup.h"
#include "support/BackupBuilder.h"

namespace yhtool {

// The sample backup of the parameter's index kind written twice: plain, and
// encrypted with the password "open sesame".
class EncryptedSamples : public ::testing::TestWithParam<yhtest::IndexKind> {
 protected:
  void SetUp() override {
    plain_ = yhtest::sample::Builder(GetParam()).Write(root_.Path() + "plain");
    encrypted_ = yhtest::sample::Builder(GetParam()).Encrypt({"open sesame", 1, 1}).Write(root_.Path() + "enc");
  }
  yhtest::TempDir root_;
  std::string plain_;
  std::string encrypted_;
};

inline std::string IndexParamName(const ::testing::TestParamInfo<yhtest::IndexKind>& info) {
  return info.param == yhtest::IndexKind::Mbdb ? "Mbdb" : "ManifestDb";
}

}  // namespace yhtool

#endif
