#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "DefaultLocation.h"
#include "YhRun.h"
#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace yhtool {
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
namespace fs = std::filesystem;

class YhBackupErrors : public ::testing::Test {
 protected:
  // A backup of the given kind under the temporary root.
  std::string Backup(const std::string& folder, IndexKind kind = IndexKind::ManifestDb, bool encrypted = false) {
    return BackupBuilder(kind)
        .InfoString("Device Name", "Test Phone")
        .ManifestBool("IsEncrypted", encrypted)
        .AddFile("HomeDomain", "Library/Preferences/a.plist", "x")
        .Write(root_.Path() + folder);
  }
  void Overwrite(const std::string& path, const std::string& bytes) { yhtest::WriteFile(path, bytes); }
  // yh show on `name` under the root; every failure is exit code 1 with one line.
  void ExpectFailure(const std::string& name, const std::string& message) {
    const YhResult run = Yh({"show", name, "calls", "--root", root_.Path()});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, "yh: " + message + "\n");
    EXPECT_EQ(run.out, "");
  }

  static std::string NoneIn(const std::string& root) {
    return "no backups found in " + root +
           " (a backup is a folder holding Manifest.db or Manifest.mbdb); give the folder that holds them with "
           "--root DIR";
  }

  yhtest::TempDir root_;
};

TEST_F(YhBackupErrors, AnEncryptedBackupWithoutPasswordSaysHowToGiveOne) {
  const std::string path = Backup("secret", IndexKind::ManifestDb, true);
  ExpectFailure("secret",
                "backup secret (Test Phone) is encrypted: give its password with --password-file FILE or the "
                "YH_BACKUP_PASSWORD environment variable");
  const YhResult exported = Yh({"export", path, "--out", root_.Path() + "out"});
  EXPECT_EQ(exported.code, 1);
  EXPECT_TRUE(Contains(exported.err, "is encrypted: give its password"));
  EXPECT_FALSE(std::filesystem::exists(root_.Path() + "out")) << "nothing is written for a backup that fails";
}

TEST_F(YhBackupErrors, AnEncryptedBackupWithoutKeyBagIsNamedAsSuch) {
  Backup("secret", IndexKind::ManifestDb, true);
  const YhResult run = Yh({"show", "secret", "calls", "--root", root_.Path()}, {"YH_BACKUP_PASSWORD=pw"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "yh: backup secret (Test Phone): the key bag of Manifest.plist is missing or damaged\n"))
      << run.err;
  EXPECT_EQ(run.out, "");
}

TEST_F(YhBackupErrors, ADamagedIndexIsUnreadable) {
  const std::string path = Backup("broken", IndexKind::Mbdb);
  Overwrite(path + "Manifest.mbdb", "not an index");
  ExpectFailure("broken", "backup broken (Test Phone): unreadable index: Manifest.mbdb is damaged or not an index");
}

TEST_F(YhBackupErrors, AFolderWithoutIndexIsNamed) {
  const std::string path = Backup("partial");
  std::filesystem::remove(path + "Manifest.db");
  ExpectFailure("partial", root_.Path() + "partial: no index (neither Manifest.db nor Manifest.mbdb)");
  ExpectFailure(path, path + ": no index (neither Manifest.db nor Manifest.mbdb)");
}

TEST_F(YhBackupErrors, AFolderThatIsNoBackupIsNamed) {
  std::filesystem::create_directories(root_.Path() + "photos");
  ExpectFailure(root_.Path() + "photos",
                root_.Path() + "photos: not a backup (no Info.plist, Manifest.plist or index)");
  Backup("one");
  Backup("two");
  const std::string folder = root_.Path().substr(0, root_.Path().size() - 1);
  ExpectFailure(folder, folder + ": not a backup but a folder of 2 backups (give it as --root)");
}

TEST_F(YhBackupErrors, UnknownAndAmbiguousNamesAreRefused) {
  Backup("aa11");
  Backup("aa22");
  ExpectFailure("bb", "no backup \"bb\" in " + root_.Path() + " (see yh list)");
  ExpectFailure("aa", "\"aa\" names 2 backups: aa11 (Test Phone), aa22 (Test Phone); give more of the folder name");
  ExpectFailure("Test Phone",
                "\"Test Phone\" names 2 backups: aa11 (Test Phone), aa22 (Test Phone); give more of "
                "the folder name");
  EXPECT_EQ(Yh({"show", "aa2", "calls", "--root", root_.Path()}).code, 0);
  ExpectFailure(root_.Path() + "gone", root_.Path() + "gone: no such folder");
}

// A path in the system's own form is a path even where the folder is
// missing, not a name to look for under the root.
TEST_F(YhBackupErrors, AMissingPathInTheSystemsFormIsNamed) {
  const std::string gone = yhtest::NativePath(root_.Path() + "gone");
  ExpectFailure(gone, gone + ": no such folder");
}

// Says where it looked and how to look elsewhere.
TEST_F(YhBackupErrors, AnEmptyOrMissingRootFindsNothing) {
  ExpectFailure("x", NoneIn(root_.Path()));
  const YhResult missing = Yh({"show", "x", "calls", "--root", root_.Path() + "nope"});
  EXPECT_EQ(missing.code, 1);
  EXPECT_EQ(missing.err, "yh: " + root_.Path() + "nope: no such folder\n");
  const DefaultLocation location = DefaultLocationIn(root_.Path());
  std::string looked;
  for (const std::string& folder : location.folders) looked += (looked.empty() ? "" : ", ") + folder + " (missing)";
  const YhResult noDefault = Yh({"show", "x", "calls"}, location.env);
  EXPECT_EQ(noDefault.code, 1);
  EXPECT_EQ(noDefault.err,
            "yh: no backups found; looked in " + looked + "; give the folder that holds them with --root DIR\n");
  fs::create_directories(location.folders.front());
  const YhResult empty = Yh({"show", "x", "calls"}, location.env);
  EXPECT_TRUE(Contains(empty.err, "looked in " + location.folders.front() + " (no backup in it)"));
}

TEST_F(YhBackupErrors, ADeviceNameMatchesWithoutRegardToCaseAndByItsStart) {
  const auto named = [&](const std::string& folder, const std::string& device) {
    BackupBuilder(IndexKind::ManifestDb)
        .InfoString("Device Name", device)
        .AddFile("HomeDomain", "Library/Preferences/a.plist", "x")
        .Write(root_.Path() + folder);
  };
  named("f1", "Ada’s iPhone");
  named("f2", "Ada’s iPad");
  named("f3", "Grace’s iPhone");
  for (const std::string name : {"ada's iphone", "ADA’S IPAD", "grace", "Gr"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Yh({"show", name, "calls", "--root", root_.Path()}).code, 0);
  }
  ExpectFailure("ada", "\"ada\" names 2 backups: f1 (Ada’s iPhone), f2 (Ada’s iPad); give more of the folder name");
  ExpectFailure("iphone", "no backup \"iphone\" in " + root_.Path() + " (see yh list)");
}

TEST_F(YhBackupErrors, ControlCharactersInNamesAreShownEscaped) {
  ExpectFailure("bad\x1b[2Jname", NoneIn(root_.Path()));
  Backup("x");
  ExpectFailure("bad\x1b[2Jname", "no backup \"bad\\x1B[2Jname\" in " + root_.Path() + " (see yh list)");
}

TEST_F(YhBackupErrors, AKindWithNothingIsNoError) {
  const std::string path = Backup("empty");
  const YhResult json = Yh({"show", path, "calls"});
  EXPECT_EQ(json.code, 0);
  EXPECT_EQ(json.out, "null\n");
  EXPECT_EQ(OutOf(Yh({"show", path, "calls", "--format", "xml"})),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
            "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n<array/>\n</plist>\n");
  EXPECT_EQ(OutOf(Yh({"show", path, "calls", "--format", "csv"})),
            "name,address,date,type,duration,country_code,network_code,location\n");
  EXPECT_EQ(OutOf(Yh({"show", path, "contacts"})), "[]\n");
}

}  // namespace
}  // namespace yhtool
