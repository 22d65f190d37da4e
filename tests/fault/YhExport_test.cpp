#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "fault/Damage.h"
#include "fault/SampleBackup.h"
#include "support/BackupBuilder.h"
#include "support/TreeSnapshot.h"

// `yh export` on a backup whose stored media files are symbolic links, one
// leading out of the backup: answers name the link inside the backup, and
// the command copies nothing that lies outside it.
namespace {

namespace fs = std::filesystem;
using yhtest::IndexKind;
using yhtest::TempDir;

const char kSecret[] = "bytes that live outside the backup";

// The yh command is built beside the shared library, in the build folder.
std::string YhCommand() { return (fs::path(YH_SHARED_LIBRARY).parent_path() / "yh").string(); }

class YhExport : public ::testing::TestWithParam<IndexKind> {};

TEST_P(YhExport, CopiesNothingFromOutsideTheBackup) {
  if (!fs::exists(YhCommand())) GTEST_SKIP() << "no yh command at " << YhCommand();
  TempDir root;
  const yhtest::BackupBuilder builder = yhtest::sample::Builder(GetParam());
  const std::string backup = builder.Write(root.Path() + "backup");
  yhtest::WriteFile(root.Path() + "secret", kSecret);
  const std::string camera = backup + builder.StoredPath("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG");
  const std::string attachment =
      backup + builder.StoredPath("MediaDomain", "Library/SMS/Attachments/ab/00/IMG_1001.jpeg");
  for (const std::string& stored : {camera, attachment}) {
    fs::remove(stored);
    fs::create_symlink(root.Path() + "secret", stored);
  }
  const std::string before = yhtest::SnapshotTree(backup);

  const std::string out = root.Path() + "out";
  const std::string command = "'" + YhCommand() + "' export '" + backup + "' --out '" + out + "' > '" +
                              root.Path() + "log' 2>&1";
  const int status = std::system(command.c_str());
  ASSERT_TRUE(WIFEXITED(status)) << yhtest::fault::ReadBytes(root.Path() + "log");
  // Skipped files are named on standard error and the export still succeeds.
  EXPECT_EQ(WEXITSTATUS(status), 0) << yhtest::fault::ReadBytes(root.Path() + "log");

  ASSERT_TRUE(fs::is_directory(out)) << yhtest::fault::ReadBytes(root.Path() + "log");
  int copies = 0;
  for (const auto& entry : fs::recursive_directory_iterator(out)) {
    EXPECT_FALSE(entry.is_symlink()) << entry.path();
    if (!entry.is_regular_file()) continue;
    ++copies;
    EXPECT_EQ(yhtest::fault::ReadBytes(entry.path().string()).find(kSecret), std::string::npos) << entry.path();
  }
  EXPECT_GT(copies, 0);  // the other kinds and media files were exported
  EXPECT_EQ(yhtest::SnapshotTree(backup), before);
}

INSTANTIATE_TEST_SUITE_P(BothIndexKinds, YhExport, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return info.param == IndexKind::Mbdb ? "Mbdb" : "ManifestDb"; });

}  // namespace
