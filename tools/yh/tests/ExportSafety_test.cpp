#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "YhRun.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"
#include "support/TreeSnapshot.h"

namespace yhtool {
namespace {

namespace fs = std::filesystem;
using yhtest::BackupBuilder;
using yhtest::IndexKind;

const char kCameraRoll[] = "CameraRollDomain";
const char kMedia[] = "MediaDomain";
const char kPhotoDirectory[] = "PhotoData/h";
const char kSecret[] = "the secret outside the backup";

// Picture names as a hostile photo library might hold them.
const std::vector<std::string> kHostileNames = {
    "../../../../escape.jpg",
    "/etc/passwd",
    "bell\a\x1b[31mred\n.jpg",
    std::string(300, 'n') + ".jpg",
    ".hidden.jpg",
    "\xff\xfe.jpg",
    "C:\\evil\\x.jpg",
    "outside.jpg",
    "inside.jpg",
    "folder.jpg",
};

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

std::string PhotoLibrary() {
  std::string sql = yhtest::Schema("Photos.sqlite-ios7");
  for (const std::string& name : kHostileNames) {
    sql += "INSERT INTO ZGENERICASSET (ZDIRECTORY, ZFILENAME) VALUES ('" + std::string(kPhotoDirectory) + "', " +
           Quoted(name) + ");";
  }
  sql +=
      "INSERT INTO ZGENERICASSET (ZDIRECTORY, ZFILENAME) VALUES ('PhotoData/d1', 'dup.jpg'), "
      "('PhotoData/d2', 'dup.jpg');";
  return sql;
}

std::string Memos() {
  return yhtest::Schema("Recordings.db-ios7") +
         "INSERT INTO ZRECORDING (ZDATE, ZDURATION, ZPATH) VALUES (0, 1, '/var/mobile/Media/Recordings/..'),"
         "(0, 1, '/var/mobile/Media/Recordings/' || char(27) || ']0;title' || char(7) || '.m4a');";
}

const char kAttachment[] = "Library/SMS/Attachments/x.a/../../../../../tmp/evil";

std::string Messages() {
  return yhtest::Schema("sms.db-ios7") +
         "INSERT INTO attachment (ROWID, guid, filename, mime_type) VALUES (1, 'g1', '~/" + kAttachment +
         "', 'image/jpeg');";
}

bool IsSafeName(const std::string& name) {
  if (name.empty() || name.size() > 255 || name[0] == '.') return false;
  for (unsigned char c : name) {
    if (c < 0x20 || c == 0x7F || c == '/' || c == '\\') return false;
  }
  return true;
}

class YhExportSafety : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
    BackupBuilder builder(IndexKind::ManifestDb);
    builder.AddDatabase(kCameraRoll, "Media/PhotoData/Photos.sqlite", PhotoLibrary())
        .AddDatabase(kMedia, "Media/Recordings/Recordings.db", Memos())
        .AddDatabase("HomeDomain", "Library/SMS/sms.db", Messages())
        .AddFile(kMedia, kAttachment, "attachment")
        .AddFile(kMedia, "Media/Recordings/..", "dot dot")
        .AddFile(kMedia, "Media/Recordings/\x1b]0;title\a.m4a", "title")
        .AddFile(kCameraRoll, "Media/PhotoData/d1/dup.jpg", "first dup")
        .AddFile(kCameraRoll, "Media/PhotoData/d2/dup.jpg", "second dup");
    for (const std::string& name : kHostileNames) {
      builder.AddFile(kCameraRoll, PhotoPath(name), "picture " + std::to_string(name.size()));
    }
    backup_ = builder.Write(dir_.Path() + "backup");
    yhtest::WriteFile(dir_.Path() + "secret/secret.jpg", kSecret);
    // Stored files swapped for a link out of the backup, a link within it and a folder.
    Replace(builder, "outside.jpg",
            [&](const fs::path& stored) { fs::create_symlink(dir_.Path() + "secret/secret.jpg", stored); });
    Replace(builder, "inside.jpg", [&](const fs::path& stored) {
      fs::create_symlink(backup_ + builder.StoredPath(kCameraRoll, "Media/PhotoData/d1/dup.jpg"), stored);
    });
    Replace(builder, "folder.jpg", [&](const fs::path& stored) {
      fs::create_directory(stored);
      yhtest::WriteFile((stored / "inner").string(), "inner");
    });
  }

  static std::string PhotoPath(const std::string& name) { return "Media/" + std::string(kPhotoDirectory) + "/" + name; }

  template <typename Make>
  void Replace(const BackupBuilder& builder, const std::string& name, Make make) {
    const fs::path stored = backup_ + builder.StoredPath(kCameraRoll, PhotoPath(name));
    fs::remove(stored);
    make(stored);
  }

  yhtest::TempDir dir_;
  std::string backup_;
  const std::string out_ = dir_.Path() + "out";
};

TEST_F(YhExportSafety, HostileNamesStayInsideTheOutputFolder) {
  const std::string backupBefore = yhtest::SnapshotTree(backup_);
  const std::string secretBefore = yhtest::SnapshotTree(dir_.Path() + "secret");
  const YhResult run = Yh({"export", backup_, "--out", out_});
  ASSERT_EQ(run.code, 0) << run.err;

  EXPECT_EQ(yhtest::SnapshotTree(backup_), backupBefore);
  EXPECT_EQ(yhtest::SnapshotTree(dir_.Path() + "secret"), secretBefore);
  std::set<std::string> beside;
  for (const auto& entry : fs::directory_iterator(dir_.Path())) beside.insert(entry.path().filename().string());
  EXPECT_EQ(beside, (std::set<std::string>{"backup", "out", "secret"}));

  size_t files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(out_)) {
    const std::string name = entry.path().filename().string();
    EXPECT_TRUE(IsSafeName(name)) << entry.path();
    EXPECT_FALSE(entry.is_symlink()) << entry.path();
    if (!entry.is_regular_file()) continue;
    ++files;
    EXPECT_NE(ReadFile(entry.path().string()), kSecret) << entry.path();
  }
  EXPECT_EQ(files, 2 * 14 + 13u) << "14 kinds as JSON and CSV, 10 of 12 pictures, 2 recordings, 1 attachment";

  const std::string photos = out_ + "/media/other-photos/";
  EXPECT_EQ(ReadFile(photos + "dup.jpg"), "first dup");
  EXPECT_EQ(ReadFile(photos + "dup-1.jpg"), "second dup");
  EXPECT_EQ(ReadFile(photos + "inside.jpg"), "first dup") << "a link within the backup is followed";
  EXPECT_EQ(ReadFile(photos + "___.._.._.._escape.jpg"), "picture 22");
  EXPECT_EQ(ReadFile(photos + "_etc_passwd"), "picture 11");
  EXPECT_EQ(ReadFile(photos + "bell__[31mred_.jpg"), "picture 18");
  EXPECT_EQ(ReadFile(photos + "_hidden.jpg"), "picture 11");
  EXPECT_EQ(ReadFile(photos + "__.jpg"), "picture 6");
  EXPECT_EQ(ReadFile(photos + platform::SystemFileName("C:_evil_x.jpg")), "picture 13");
  EXPECT_EQ(ReadFile(photos + std::string(196, 'n') + ".jpg"), "picture 304");
  EXPECT_EQ(ReadFile(out_ + "/media/recordings/__"), "dot dot");
  EXPECT_EQ(ReadFile(out_ + "/media/recordings/_]0;title_.m4a"), "title");
  EXPECT_EQ(ReadFile(out_ + "/media/attachments/IMG_1._tmp_evil"), "attachment");

  EXPECT_TRUE(Contains(run.err, "yh: skipped other-photos file \"outside.jpg\": lies outside the backup ("));
  EXPECT_TRUE(Contains(run.err, "yh: skipped other-photos file \"folder.jpg\": not a regular file ("));
  EXPECT_FALSE(Contains(run.err, "\x1b"));
  EXPECT_TRUE(Contains(run.out, "\nother-photos    12       10     98     2        0\n"));
}

TEST_F(YhExportSafety, AnswersThatNameFilesOutsideAreShownButNotCopied) {
  const YhResult show = Yh({"show", backup_, "other-photos", "--format", "csv"});
  EXPECT_EQ(show.code, 0);
  EXPECT_TRUE(Contains(show.out, "\n\"bell\a\x1b[31mred\n.jpg\","));
  const YhResult table = Yh({"show", backup_, "other-photos", "--format", "table"});
  EXPECT_EQ(table.code, 0);
  EXPECT_FALSE(Contains(table.out, "\x1b"));
  EXPECT_TRUE(Contains(table.out, "bell  [31mred .jpg"));
}

}  // namespace
}  // namespace yhtool
