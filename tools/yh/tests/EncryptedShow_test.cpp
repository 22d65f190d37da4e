#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "EncryptedSamples.h"
#include "YhRun.h"
#include "support/TreeSnapshot.h"

namespace yhtool {
namespace {

using yhtest::IndexKind;

// yh show, export and report read an encrypted backup in place once given
// its password.
class YhEncrypted : public EncryptedSamples {};

TEST_P(YhEncrypted, ShowsWhatThePlainBackupShowsAndLeavesNoCopy) {
  const std::string before = yhtest::SnapshotTree(encrypted_);
  const yhtest::TempDir temporary;
  for (const char* kind : {"calls", "contacts", "messages", "notes", "safari", "events", "reminders"}) {
    const YhResult run = Yh({"show", encrypted_, kind}, {"YH_BACKUP_PASSWORD=open sesame", "TMPDIR=" + temporary.Path()});
    EXPECT_TRUE(std::filesystem::is_empty(temporary.Path())) << kind;
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(Contains(run.err, "Checking the password"));
    EXPECT_EQ(run.out, OutOf(Yh({"show", plain_, kind}))) << kind;
  }
  EXPECT_EQ(yhtest::SnapshotTree(encrypted_), before);
}

TEST_P(YhEncrypted, ExportsDecryptedMediaWithThePasswordFromAFile) {
  const std::string file = root_.Path() + "password.txt";
  yhtest::WriteFile(file, "open sesame\n");
  const std::string out = root_.Path() + "out";
  const YhResult run = Yh({"export", encrypted_, "--out", out, "--kinds", "camera-photos", "--password-file", file});
  EXPECT_EQ(run.code, 0) << run.err;
  const std::string plainOut = root_.Path() + "plain-out";
  ASSERT_EQ(Yh({"export", plain_, "--out", plainOut, "--kinds", "camera-photos"}).code, 0);
  size_t copies = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(plainOut + "/media")) {
    if (!entry.is_regular_file()) continue;
    const std::string relative = entry.path().string().substr(plainOut.size());
    EXPECT_EQ(ReadFile(out + relative), ReadFile(entry.path().string())) << relative;
    ++copies;
  }
  EXPECT_GT(copies, 0u);
}

TEST_P(YhEncrypted, AWrongPasswordExitsWithOne) {
  const YhResult run = Yh({"show", encrypted_, "calls"}, {"YH_BACKUP_PASSWORD=sesame"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "wrong password")) << run.err;
  EXPECT_EQ(run.out, "");
}

TEST_P(YhEncrypted, NoPasswordAndNoTerminalSaysHowToGiveOne) {
  const YhResult run = Yh({"report", encrypted_, "--out", root_.Path() + "report"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "--password-file FILE or the YH_BACKUP_PASSWORD environment variable"));
}

INSTANTIATE_TEST_SUITE_P(BothIndexes, YhEncrypted, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         IndexParamName);

}  // namespace
}  // namespace yhtool
