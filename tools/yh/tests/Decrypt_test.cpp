#include <gtest/gtest.h>

#include <string>

#include "EncryptedSamples.h"
#include "YhRun.h"
#include "support/TreeSnapshot.h"

namespace yhtool {
namespace {

using yhtest::IndexKind;

class YhDecrypt : public EncryptedSamples {};

TEST_P(YhDecrypt, WritesACopyThatShowsAsThePlainBackup) {
  const std::string before = yhtest::SnapshotTree(encrypted_);
  const std::string copy = root_.Path() + "copy";
  const YhResult run = Yh({"decrypt", encrypted_, "--out", copy}, {"YH_BACKUP_PASSWORD=open sesame"});
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, "Decrypted"));
  EXPECT_TRUE(Contains(run.err, "Checking the password"));
  EXPECT_TRUE(Contains(run.err, "skipped stored file"));  // the sample's file that was not copied
  EXPECT_EQ(yhtest::SnapshotTree(encrypted_), before);
  for (const char* kind : {"calls", "contacts", "messages", "notes", "events"}) {
    EXPECT_EQ(OutOf(Yh({"show", copy, kind})), OutOf(Yh({"show", plain_, kind}))) << kind;
  }
}

TEST_P(YhDecrypt, TakesThePasswordFromAFile) {
  const std::string file = root_.Path() + "password.txt";
  yhtest::WriteFile(file, "open sesame\n");
  const YhResult run = Yh({"decrypt", encrypted_, "--out", root_.Path() + "copy", "--password-file", file});
  EXPECT_EQ(run.code, 0) << run.err;
}

TEST_P(YhDecrypt, AWrongPasswordExitsWithOne) {
  const YhResult run = Yh({"decrypt", encrypted_, "--out", root_.Path() + "copy"}, {"YH_BACKUP_PASSWORD=sesame"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "wrong password"));
  EXPECT_EQ(ReadFile(root_.Path() + "copy/Manifest.plist"), "");
}

TEST_P(YhDecrypt, NoPasswordAndNoTerminalSaysHowToGiveOne) {
  const YhResult run = Yh({"decrypt", encrypted_, "--out", root_.Path() + "copy"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "--password-file FILE or the YH_BACKUP_PASSWORD environment variable"));
}

TEST_P(YhDecrypt, APlainBackupIsRefused) {
  const YhResult run = Yh({"decrypt", plain_, "--out", root_.Path() + "copy"}, {"YH_BACKUP_PASSWORD=x"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "not encrypted"));
}

INSTANTIATE_TEST_SUITE_P(BothIndexes, YhDecrypt, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         IndexParamName);

}  // namespace
}  // namespace yhtool
