#include "kinds/SmsAttachment.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kinds/KindFixture.h"
#include "support/BackupBuilder.h"
#include "support/PlistDump.h"
#include "support/TreeSnapshot.h"

namespace yhtest {
namespace {

const char kSmsPath[] = "Library/SMS/sms.db";
const char kHomeDomain[] = "HomeDomain";
const char kMediaDomain[] = "MediaDomain";

const char kPng[] = "Library/SMS/Attachments/aa/01/a.png";
const char kMovie[] = "Library/SMS/Attachments/bb/02/movie.MOV";
const char kJpeg[] = "Library/SMS/Attachments/ab/12/IMG_0001.JPG";

// SQL literals of one attachment row: file name and MIME type ('text' or NULL).
using Row = std::pair<std::string, std::string>;

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

// The schema of one device generation with the rows in its attachment table.
std::string SmsDb(const std::string& schema, const std::vector<Row>& rows) {
  // From iOS 11 on every attachment also carries a unique original guid.
  const bool originalGuid = schema == "sms.db-ios13";
  std::string sql = Schema(schema);
  int id = 1;
  for (const Row& row : rows) {
    const std::string guid = Quoted("guid-" + std::to_string(id));
    sql += "INSERT INTO attachment (ROWID, guid, filename, mime_type" +
           std::string(originalGuid ? ", original_guid" : "") + ") VALUES (" + std::to_string(id) + "," +
           guid + "," + row.first + "," + row.second + (originalGuid ? "," + guid : "") + ");";
    ++id;
  }
  return sql;
}

std::string Dict(const std::string& name, const std::string& path, uint64_t size, int type,
                 const std::string& queryPath) {
  return "{\"file_name\":\"" + name + "\",\"path\":\"" + path + "\",\"size\":" + std::to_string(size) +
         "u,\"type\":" + std::to_string(type) + "u,\"query_path\":\"" + queryPath + "\"}";
}

class SmsAttachmentTest : public ::testing::Test {
 protected:
  // Writes the backup and reads its index.
  AnalysedDevice& Analyse(const BackupBuilder& builder, IndexKind kind) {
    backup_ = builder.Write(dir_.Path() + "backup");
    device_ = std::make_unique<AnalysedDevice>(backup_, kind);
    return *device_;
  }
  std::string Stored(const BackupBuilder& builder, const std::string& relativePath) const {
    return backup_ + builder.StoredPath(kMediaDomain, relativePath);
  }

  TempDir dir_;
  std::string backup_;
  std::unique_ptr<AnalysedDevice> device_;
  SmsAttachment attachments_;
};

TEST_F(SmsAttachmentTest, LocatedAttachmentsAreNamedByTheirPlaceInTheList) {
  for (const char* schema : {"sms.db-ios7", "sms.db-ios13", "sms.db-ios18"}) {
    for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
      SCOPED_TRACE(std::string(schema) + (kind == IndexKind::Mbdb ? " mbdb" : " manifest.db"));
      TempDir dir;
      BackupBuilder builder(kind);
      builder
          .AddDatabase(kHomeDomain, kSmsPath,
                       SmsDb(schema, {{Quoted(std::string("~/") + kPng), "'image/png'"},
                                      {Quoted(std::string("~/") + kMovie), "'video/quicktime'"},
                                      {Quoted(std::string("~/") + kJpeg), "'image/jpeg'"}}))
          .AddFile(kMediaDomain, kPng, "png!")
          .AddFile(kMediaDomain, kMovie, "a movie")
          .AddFile(kMediaDomain, kJpeg, "jpeg data");
      const std::string path = builder.Write(dir.Path() + "backup");
      AnalysedDevice device(path, kind);
      SmsAttachment attachments;
      EXPECT_EQ(DumpAndFree(attachments.FindContent(device.Get(), 0)),
                "[" + Dict("IMG_1.png", path + builder.StoredPath(kMediaDomain, kPng), 4, 0, kPng) + "," +
                    Dict("IMG_2.MOV", path + builder.StoredPath(kMediaDomain, kMovie), 7, 1, kMovie) + "," +
                    Dict("IMG_3.JPG", path + builder.StoredPath(kMediaDomain, kJpeg), 9, 0, kJpeg) + "]");
    }
  }
}

// Two attachments before the located one: one absent from the index, one
// listed there without its file.
BackupBuilder WithTwoMissing(IndexKind kind) {
  BackupBuilder builder(kind);
  builder
      .AddDatabase(kHomeDomain, kSmsPath,
                   SmsDb("sms.db-ios7", {{Quoted(std::string("~/") + kPng), "'image/png'"},
                                         {Quoted(std::string("~/") + kMovie), "'video/quicktime'"},
                                         {Quoted(std::string("~/") + kJpeg), "'image/jpeg'"}}))
      .AddMissingFile(kMediaDomain, kMovie)
      .AddFile(kMediaDomain, kJpeg, "jpeg data");
  return builder;
}

TEST_F(SmsAttachmentTest, ManifestDbDropsUnlocatedAttachmentsFromTheNumbering) {
  const BackupBuilder builder = WithTwoMissing(IndexKind::ManifestDb);
  AnalysedDevice& device = Analyse(builder, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_1.JPG", Stored(builder, kJpeg), 9, 0, kJpeg) + "]");
}

TEST_F(SmsAttachmentTest, MbdbKeepsUnlocatedAttachmentsInTheNumbering) {
  const BackupBuilder builder = WithTwoMissing(IndexKind::Mbdb);
  AnalysedDevice& device = Analyse(builder, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_3.JPG", Stored(builder, kJpeg), 9, 0, kJpeg) + "]");
}

// Unlocated attachments stay in the list, so nothing is shown but the list
// counts as read: the next request does not look again.
TEST_F(SmsAttachmentTest, MbdbWithNoAttachmentLocatedGivesAnEmptyArrayAndKeepsIt) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddDatabase(kHomeDomain, kSmsPath, SmsDb("sms.db-ios7", {{Quoted(std::string("~/") + kJpeg), "'image/jpeg'"}}));
  AnalysedDevice& device = Analyse(builder, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)), "[]");
  std::filesystem::remove(backup_ + builder.StoredPath(kHomeDomain, kSmsPath));
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)), "[]");
}

TEST_F(SmsAttachmentTest, EmptyFileIsKeptWithSizeZero) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir dir;
    BackupBuilder builder(kind);
    builder.AddDatabase(kHomeDomain, kSmsPath, SmsDb("sms.db-ios18", {{Quoted(std::string("~/") + kJpeg), "'image/jpeg'"}}))
        .AddFile(kMediaDomain, kJpeg, "");
    const std::string path = builder.Write(dir.Path() + "backup");
    AnalysedDevice device(path, kind);
    SmsAttachment attachments;
    EXPECT_EQ(DumpAndFree(attachments.FindContent(device.Get(), 0)),
              "[" + Dict("IMG_1.JPG", path + builder.StoredPath(kMediaDomain, kJpeg), 0, 0, kJpeg) + "]");
  }
}

TEST_F(SmsAttachmentTest, OnlyALowerCaseImageMimeTypeMakesAnImage) {
  const std::vector<std::string> files = {"Library/SMS/Attachments/01/a.png", "Library/SMS/Attachments/02/b.gif",
                                          "Library/SMS/Attachments/03/c.bin", "Library/SMS/Attachments/04/d.vcf",
                                          "Library/SMS/Attachments/05/e.svg"};
  const std::vector<std::string> mimeTypes = {"'Image/png'", "'image/gif'", "NULL", "'text/vcard'",
                                              "'application/x-image-svg'"};
  std::vector<Row> rows;
  BackupBuilder builder(IndexKind::ManifestDb);
  for (size_t i = 0; i < files.size(); ++i) {
    rows.push_back({Quoted("~/" + files[i]), mimeTypes[i]});
    builder.AddFile(kMediaDomain, files[i], "x");
  }
  builder.AddDatabase(kHomeDomain, kSmsPath, SmsDb("sms.db-ios7", rows));
  AnalysedDevice& device = Analyse(builder, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_1.png", Stored(builder, files[0]), 1, 1, files[0]) + "," +
                Dict("IMG_2.gif", Stored(builder, files[1]), 1, 0, files[1]) + "," +
                Dict("IMG_3.bin", Stored(builder, files[2]), 1, 1, files[2]) + "," +
                Dict("IMG_4.vcf", Stored(builder, files[3]), 1, 1, files[3]) + "," +
                Dict("IMG_5.svg", Stored(builder, files[4]), 1, 0, files[4]) + "]");
}

TEST_F(SmsAttachmentTest, OlderDatabaseIsReadThroughMadridAttachment) {
  const char kOld[] = "Library/SMS/Attachments/cd/03/IMG_0042.PNG";
  const std::string sql =
      Schema("sms.db-ios5-legacy") +
      "INSERT INTO madrid_attachment (ROWID, filename, mime_type) VALUES"
      " (1,'/var/mobile/',NULL),"
      " (2,NULL,'image/png'),"
      " (3,'/var/mobile/Library/SMS/Attachments/cd/03/IMG_0042.PNG','image/png'),"
      " (4,'/var/mobile/x','text/plain');";
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddDatabase(kHomeDomain, kSmsPath, sql).AddFile(kMediaDomain, kOld, "old png").AddFile(kMediaDomain, "x", "xx");
  AnalysedDevice& device = Analyse(builder, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_1.PNG", Stored(builder, kOld), 7, 0, kOld) + "," +
                Dict("IMG_2", Stored(builder, "x"), 2, 1, "x") + "]");
}

TEST_F(SmsAttachmentTest, AttachmentTableWinsOverMadridAttachment) {
  const std::string sql = SmsDb("sms.db-ios7", {{Quoted(std::string("~/") + kJpeg), "'image/jpeg'"}}) +
                          "CREATE TABLE madrid_attachment (ROWID INTEGER PRIMARY KEY AUTOINCREMENT,"
                          " attachment_guid TEXT, created_date INTEGER, start_date INTEGER, filename TEXT,"
                          " uti_type TEXT, mime_type TEXT, transfer_state INTEGER, is_incoming INTEGER,"
                          " message_id INTEGER);"
                          "INSERT INTO madrid_attachment (ROWID, filename, mime_type) VALUES"
                          " (1,'/var/mobile/Library/SMS/Attachments/aa/01/a.png','image/png');";
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kSmsPath, sql).AddFile(kMediaDomain, kJpeg, "jpeg data").AddFile(kMediaDomain, kPng, "png!");
  AnalysedDevice& device = Analyse(builder, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_1.JPG", Stored(builder, kJpeg), 9, 0, kJpeg) + "]");
}

// Rows whose names are too short, or odd, next to indexed files of those names.
BackupBuilder OddNames(IndexKind kind) {
  const std::string longName = "Library/SMS/Attachments/ff/06/f.an-extension-much-longer-than-the-name-buffer";
  BackupBuilder builder(kind);
  builder
      .AddDatabase(kHomeDomain, kSmsPath,
                   SmsDb("sms.db-ios7", {{"'~/'", "NULL"},
                                         {"'~/a'", "NULL"},
                                         {"'~/ab'", "NULL"},
                                         {"'~/Library/SMS/Attachments/ee/05/noext'", "NULL"},
                                         {Quoted("~/" + longName), "NULL"},
                                         {"'~/a.b/c'", "NULL"}}))
      .AddFile(kMediaDomain, "a", "1")
      .AddFile(kMediaDomain, "ab", "12")
      .AddFile(kMediaDomain, "Library/SMS/Attachments/ee/05/noext", "123")
      .AddFile(kMediaDomain, longName, "1234")
      .AddFile(kMediaDomain, "a.b/c", "12345");
  return builder;
}

TEST_F(SmsAttachmentTest, ManifestDbIgnoresQueryPathsShorterThanThree) {
  const std::string longName = "Library/SMS/Attachments/ff/06/f.an-extension-much-longer-than-the-name-buffer";
  const BackupBuilder builder = OddNames(IndexKind::ManifestDb);
  AnalysedDevice& device = Analyse(builder, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_1", Stored(builder, "Library/SMS/Attachments/ee/05/noext"), 3, 1,
                       "Library/SMS/Attachments/ee/05/noext") +
                "," + Dict("IMG_2.an-extension-much-longer-than-the-name-buffer", Stored(builder, longName), 4, 1, longName) +
                "," + Dict("IMG_3.b/c", Stored(builder, "a.b/c"), 5, 1, "a.b/c") + "]");
}

TEST_F(SmsAttachmentTest, MbdbLocatesShortQueryPathsToo) {
  const std::string longName = "Library/SMS/Attachments/ff/06/f.an-extension-much-longer-than-the-name-buffer";
  const BackupBuilder builder = OddNames(IndexKind::Mbdb);
  AnalysedDevice& device = Analyse(builder, IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_1", Stored(builder, "a"), 1, 1, "a") + "," + Dict("IMG_2", Stored(builder, "ab"), 2, 1, "ab") +
                "," + Dict("IMG_3", Stored(builder, "Library/SMS/Attachments/ee/05/noext"), 3, 1,
                           "Library/SMS/Attachments/ee/05/noext") +
                "," + Dict("IMG_4.an-extension-much-longer-than-the-name-buffer", Stored(builder, longName), 4, 1, longName) +
                "," + Dict("IMG_5.b/c", Stored(builder, "a.b/c"), 5, 1, "a.b/c") + "]");
}

TEST_F(SmsAttachmentTest, AttachmentsAreReadOnceAndTheFlagIsIgnored) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kSmsPath, SmsDb("sms.db-ios7", {{Quoted(std::string("~/") + kJpeg), "'image/jpeg'"}}))
      .AddFile(kMediaDomain, kJpeg, "jpeg data");
  AnalysedDevice& device = Analyse(builder, IndexKind::ManifestDb);
  const std::string expected = "[" + Dict("IMG_1.JPG", Stored(builder, kJpeg), 9, 0, kJpeg) + "]";
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)), expected);
  std::filesystem::remove(backup_ + builder.StoredPath(kHomeDomain, kSmsPath));
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 1)), expected);
}

TEST_F(SmsAttachmentTest, NoAttachmentsGiveNullAndTheNextRequestLooksAgain) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kSmsPath, SmsDb("sms.db-ios18", {})).AddFile(kMediaDomain, kJpeg, "jpeg data");
  AnalysedDevice& device = Analyse(builder, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)), "null");
  WriteDatabase(backup_ + builder.StoredPath(kHomeDomain, kSmsPath),
                "INSERT INTO attachment (ROWID, guid, filename, mime_type) VALUES (1,'g','~/" + std::string(kJpeg) +
                    "','image/jpeg');");
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_1.JPG", Stored(builder, kJpeg), 9, 0, kJpeg) + "]");
}

TEST_F(SmsAttachmentTest, NoMessageDatabaseGivesNull) {
  AnalysedDevice& device = Analyse(BackupBuilder(IndexKind::Mbdb).AddFile(kMediaDomain, kJpeg, "jpeg data"), IndexKind::Mbdb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)), "null");
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)), "null");
}

TEST_F(SmsAttachmentTest, DatabasesOfTwoDomainsNumberOnFromOneToTheNext) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kHomeDomain, kSmsPath, SmsDb("sms.db-ios7", {{Quoted(std::string("~/") + kPng), "'image/png'"}}))
      .AddDatabase("AppDomainGroup-group.com.example", kSmsPath,
                   SmsDb("sms.db-ios18", {{Quoted(std::string("~/") + kJpeg), "'image/jpeg'"}}))
      .AddFile(kMediaDomain, kPng, "png!")
      .AddFile(kMediaDomain, kJpeg, "jpeg data");
  AnalysedDevice& device = Analyse(builder, IndexKind::ManifestDb);
  EXPECT_EQ(DumpAndFree(attachments_.FindContent(device.Get(), 0)),
            "[" + Dict("IMG_1.png", Stored(builder, kPng), 4, 0, kPng) + "," +
                Dict("IMG_2.JPG", Stored(builder, kJpeg), 9, 0, kJpeg) + "]");
}

TEST_F(SmsAttachmentTest, LeavesTheBackupUntouched) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir dir;
    const std::string path = WithTwoMissing(kind).Write(dir.Path() + "backup");
    const std::string before = SnapshotTree(path);
    AnalysedDevice device(path, kind);
    SmsAttachment attachments;
    EXPECT_NE(DumpAndFree(attachments.FindContent(device.Get(), 0)), "null");
    EXPECT_EQ(SnapshotTree(path), before);
  }
}

}  // namespace
}  // namespace yhtest
