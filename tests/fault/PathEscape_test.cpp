#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fault/FaultBench.h"
#include "support/BackupBuilder.h"
#include "support/TreeSnapshot.h"

// A crafted Manifest.db whose fileIDs climb out of the backup folder ("..",
// "../x", "ab/../../../x"): the stored file of such a row would lie outside
// the backup, so the row is not kept and no answer names or reads that file.
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::TempDir;

std::string FilesRow(const std::string& fileId, const std::string& relativePath) {
  return "INSERT INTO Files (fileID, domain, relativePath, flags) VALUES ('" + fileId + "', 'HomeDomain', '" +
         relativePath + "', 1);\n";
}

TEST(PathEscape, FileIdsThatLeaveTheBackupFolderAreNotKept) {
  TempDir root;
  // The backup lies two folders down, so that "../.." stays inside the test's folder.
  const std::string outer = root.Path() + "a/";
  const std::string backup = BackupBuilder(IndexKind::ManifestDb).Write(outer + "b/backup");
  yhtest::WriteDatabase(outer + "sms",
                        "CREATE TABLE chat (chat_identifier); CREATE TABLE handle (id);"
                        "CREATE TABLE message (text, date, is_from_me, handle_id, service, country);"
                        "CREATE TABLE attachment (filename, mime_type);"
                        "INSERT INTO chat VALUES ('+1555'); INSERT INTO handle VALUES ('+1555');"
                        "INSERT INTO message VALUES ('from outside', 1, 0, 1, 'SMS', 'us');"
                        "INSERT INTO attachment VALUES ('~/Library/SMS/Attachments/x.jpg', 'image/jpeg');");
  yhtest::WriteDatabase(outer + "b/photos",
                        "CREATE TABLE ZGENERICASSET (ZDIRECTORY, ZFILENAME);"
                        "INSERT INTO ZGENERICASSET VALUES ('DCIM/100APPLE', 'IMG_0001.JPG');"
                        "INSERT INTO ZGENERICASSET VALUES ('PhotoData', 'other.png');");
  yhtest::WriteFile(outer + "b/..x", "picture outside");
  // "ab/ab/../../.." resolves only where the folders exist.
  std::filesystem::create_directories(backup + "ab/ab");
  std::filesystem::remove(backup + "Manifest.db");
  yhtest::WriteDatabase(backup + "Manifest.db",
                        yhtest::Schema("Manifest.db-ios14") + FilesRow("../sms", "Library/SMS/sms.db") +
                            FilesRow("ab/../../../photos", "Media/PhotoData/Photos.sqlite") +
                            FilesRow("..x", "Media/DCIM/100APPLE/IMG_0001.JPG") +
                            FilesRow("..", "Library/SMS/Attachments/x.jpg") +
                            FilesRow("ab/../../../..x", "Media/PhotoData/other.png"));
  const std::string before = yhtest::SnapshotTree(root.Path());

  const yhtest::fault::Answers answers = yhtest::fault::AskEverything(backup);
  ASSERT_TRUE(answers.found);
  EXPECT_EQ(answers.rounds[0][ContentSms], "[]");
  EXPECT_EQ(answers.rounds[0][ContentSmsAttachment], "null");
  EXPECT_EQ(answers.rounds[0][ContentCameraPhoto], "null");
  EXPECT_EQ(answers.rounds[0][ContentOtherPhoto], "null");
  EXPECT_TRUE(answers.paths.empty());
  EXPECT_EQ(yhtest::SnapshotTree(root.Path()), before);
}

// Identifiers that merely begin with a dot stay inside the folder and are
// kept like any other.
TEST(PathEscape, FileIdsWithDotsInsideTheFolderAreKept) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "backup");
  yhtest::WriteDatabase(backup + ".a/.a", "CREATE TABLE ZGENERICASSET (ZDIRECTORY, ZFILENAME);"
                                          "INSERT INTO ZGENERICASSET VALUES ('PhotoData', 'other.png');");
  yhtest::WriteFile(backup + "x./x.y", "picture");
  std::filesystem::remove(backup + "Manifest.db");
  yhtest::WriteDatabase(backup + "Manifest.db", yhtest::Schema("Manifest.db-ios14") +
                                                    FilesRow(".a", "Media/PhotoData/Photos.sqlite") +
                                                    FilesRow("x.y", "Media/PhotoData/other.png"));
  const yhtest::fault::Answers answers = yhtest::fault::AskEverything(backup);
  ASSERT_TRUE(answers.found);
  // Once for each of the two rounds of questions.
  EXPECT_EQ(answers.paths, (std::vector<std::string>{backup + "x./x.y", backup + "x./x.y"}));
}

}  // namespace
