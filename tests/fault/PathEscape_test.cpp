#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fault/FaultBench.h"
#include "support/BackupBuilder.h"
#include "support/TreeSnapshot.h"

// A crafted Manifest.db whose fileIDs climb out of the backup folder ("..",
// "../x", "ab/../../../x", "/x", "ab\\..\\x"): the stored file of such a row
// would lie outside the backup (or, on Windows, a backslash's would), so the
// row is not kept and no answer of either service names or reads that file.
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::TempDir;

// Each service's answers in the first round of questions.
const std::string& DescribedAnswer(const yhtest::fault::Answers& answers, int type) { return answers.rounds[0][type]; }
const std::string& CurrentAnswer(const yhtest::fault::Answers& answers, int type) {
  return answers.rounds[0][yhtest::fault::kContentTypes + type];
}

// Media in the camera roll's domain, where the current service looks for them.
std::string FilesRow(const std::string& fileId, const std::string& relativePath) {
  const char* domain = relativePath.compare(0, 6, "Media/") == 0 ? "CameraRollDomain" : "HomeDomain";
  return "INSERT INTO Files (fileID, domain, relativePath, flags) VALUES ('" + fileId + "', '" + domain + "', '" +
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
  // Inside the folder on this system, but outside through a backslash on Windows or as an absolute fileID.
  yhtest::WriteDatabase(backup + "vo/vo\\..\\..\\voicemail",
                        yhtest::Schema("voicemail.db-ios9") +
                            "INSERT INTO voicemail (ROWID, sender, date, flags) VALUES (1, '+1555', 1, 0);");
  yhtest::WriteDatabase(backup + "x/x", "CREATE TABLE ZGENERICASSET (ZDIRECTORY, ZFILENAME);"
                                        "INSERT INTO ZGENERICASSET VALUES ('PhotoData', 'other.png');");
  // "ab/ab/../../.." resolves only where the folders exist.
  std::filesystem::create_directories(backup + "ab/ab");
  std::filesystem::remove(backup + "Manifest.db");
  yhtest::WriteDatabase(backup + "Manifest.db",
                        yhtest::Schema("Manifest.db-ios14") + FilesRow("../sms", "Library/SMS/sms.db") +
                            FilesRow("ab/../../../photos", "Media/PhotoData/Photos.sqlite") +
                            FilesRow("..x", "Media/DCIM/100APPLE/IMG_0001.JPG") +
                            FilesRow("..", "Library/SMS/Attachments/x.jpg") +
                            FilesRow("ab/../../../..x", "Media/PhotoData/other.png") +
                            FilesRow("vo\\..\\..\\voicemail", "Library/Voicemail/voicemail.db") +
                            FilesRow("/x", "Media/PhotoData/Photos.sqlite"));
  const std::string before = yhtest::SnapshotTree(root.Path());

  const yhtest::fault::Answers answers = yhtest::fault::AskEverything(backup);
  ASSERT_TRUE(answers.found);
  for (const auto answer : {DescribedAnswer, CurrentAnswer}) {
    EXPECT_EQ(answer(answers, ContentSms), "[]");
    EXPECT_EQ(answer(answers, ContentSmsAttachment), "null");
    EXPECT_EQ(answer(answers, ContentCameraPhoto), "null");
    EXPECT_EQ(answer(answers, ContentOtherPhoto), "null");
    EXPECT_EQ(answer(answers, ContentVoicemail), "null");
  }
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
  // Once for each of the two rounds of questions, by each service.
  EXPECT_EQ(answers.paths, std::vector<std::string>(4, backup + "x./x.y"));
}

// Device paths that the current service turns into index lookups (an
// attachment's file name, a memo's ZPATH) climb out with "..": they are only
// ever looked up among the index's own paths, never joined to a folder, so
// no answer of either service names the file they point at.
TEST(PathEscape, DevicePathsThatClimbNameNoFileOutside) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir root;
    yhtest::WriteFile(root.Path() + "outside.jpg", "picture outside");
    yhtest::WriteFile(root.Path() + "outside.m4a", "memo outside");
    const std::string climb = "../../../../../../../../../..";
    const std::string backup =
        BackupBuilder(kind)
            .AddDatabase("HomeDomain", "Library/SMS/sms.db",
                         yhtest::Schema("sms.db-ios13") +
                             "INSERT INTO attachment (ROWID, guid, original_guid, filename, mime_type) VALUES "
                             "(1, 'A1', 'A1', '~/" + climb + root.Path() + "outside.jpg', 'image/jpeg'), "
                             "(2, 'A2', 'A2', '" + root.Path() + "outside.jpg', 'image/jpeg');\n")
            .AddDatabase("MediaDomain", "Media/Recordings/Recordings.db",
                         yhtest::Schema("Recordings.db-ios7") +
                             "INSERT INTO ZRECORDING (Z_PK, ZDATE, ZPATH) VALUES "
                             "(1, 1, '/var/mobile/" + climb + root.Path() + "outside.m4a'), "
                             "(2, 2, '../../outside.m4a'), (3, 3, '" + root.Path() + "outside.m4a');\n")
            .Write(root.Path() + "backup");
    const std::string before = yhtest::SnapshotTree(root.Path());
    const yhtest::fault::Answers answers = yhtest::fault::AskEverything(backup);
    ASSERT_TRUE(answers.found);
    for (const std::string& path : answers.paths) EXPECT_EQ(path, "") << "an answer names a file";
    EXPECT_NE(CurrentAnswer(answers, ContentSmsAttachment).find("\"present\":false"), std::string::npos);
    EXPECT_EQ(CurrentAnswer(answers, ContentSmsAttachment).find("\"present\":true"), std::string::npos);
    EXPECT_NE(CurrentAnswer(answers, ContentRecording).find("\"present\":false"), std::string::npos);
    EXPECT_EQ(CurrentAnswer(answers, ContentRecording).find("\"present\":true"), std::string::npos);
    EXPECT_EQ(yhtest::SnapshotTree(root.Path()), before);
  }
}

}  // namespace
