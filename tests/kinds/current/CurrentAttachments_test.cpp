#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

std::string Attachments(const std::string& schema) {
  return Schema(schema) +
         "INSERT INTO attachment (ROWID, guid, original_guid, filename, mime_type, transfer_name, created_date) VALUES "
         "(1, 'a', 'a', '~/Library/SMS/Attachments/ab/12/IMG_0001.HEIC', 'image/heic', 'IMG_0001.HEIC', 583675200), "
         "(2, 'b', 'b', '/var/mobile/Library/SMS/Attachments/cd/34/voice.caf', 'audio/x-caf', 'Audio.caf', NULL), "
         "(3, 'c', 'c', NULL, 'image/png', 'Screenshot.png', 583675230), "
         "(4, 'd', 'd', '~/Library/SMS/Attachments/ef/56/Doc', 'Image/png', 'Doc', 583675260);\n";
}

// An attachment without a file name (not downloaded, or kept in iCloud) is
// listed too, with no path, named after the extension it was sent with.
TEST(CurrentAttachments, EveryAttachmentLocatedExactlyWithWhetherItsFileIsPresent) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir root;
    BackupBuilder builder(kind);
    builder.AddDatabase("HomeDomain", "Library/SMS/sms.db", Attachments("sms.db-ios13"))
        .AddFile("MediaDomain", "Library/SMS/Attachments/ab/12/IMG_0001.HEIC", "heic bytes")
        .AddFile("MediaDomain", "Library/SMS/Attachments/ab/12/IMG_0001.HEIC.thumbnail.jpg", "thumb")
        .AddFile("MediaDomain", "Library/SMS/Attachments/ef/56/Doc", "png");
    const std::string backup = builder.Write(root.Path() + "b");
    ScopedTimeZone utc("UTC");
    ServedBackup served(backup, Service::Current);
    const std::string heic = backup + builder.StoredPath("MediaDomain", "Library/SMS/Attachments/ab/12/IMG_0001.HEIC");
    const std::string doc = backup + builder.StoredPath("MediaDomain", "Library/SMS/Attachments/ef/56/Doc");
    EXPECT_EQ(served.Answer(ContentSmsAttachment),
              "[{\"file_name\":\"IMG_1.HEIC\",\"path\":\"" + heic +
                  "\",\"size\":10u,\"type\":0u,\"query_path\":\"Library/SMS/Attachments/ab/12/IMG_0001.HEIC\","
                  "\"present\":true,\"mime_type\":\"image/heic\",\"original_name\":\"IMG_0001.HEIC\","
                  "\"date\":\"2019-07-01 12:00:00\"},"
                  "{\"file_name\":\"IMG_2.caf\",\"path\":\"\",\"size\":0u,\"type\":1u,"
                  "\"query_path\":\"Library/SMS/Attachments/cd/34/voice.caf\",\"present\":false,"
                  "\"mime_type\":\"audio/x-caf\",\"original_name\":\"Audio.caf\",\"date\":\"\"},"
                  "{\"file_name\":\"IMG_3.png\",\"path\":\"\",\"size\":0u,\"type\":0u,\"query_path\":\"\","
                  "\"present\":false,\"mime_type\":\"image/png\",\"original_name\":\"Screenshot.png\","
                  "\"date\":\"2019-07-01 12:00:30\"},"
                  "{\"file_name\":\"IMG_4\",\"path\":\"" + doc +
                  "\",\"size\":3u,\"type\":0u,\"query_path\":\"Library/SMS/Attachments/ef/56/Doc\",\"present\":true,"
                  "\"mime_type\":\"Image/png\",\"original_name\":\"Doc\",\"date\":\"2019-07-01 12:01:00\"}]");
  }
}

// The dictionaries of an answer dump "[{...},{...}]" (no nested braces).
std::vector<std::string> Dictionaries(const std::string& dump) {
  std::vector<std::string> items;
  for (size_t at = dump.find('{'); at != std::string::npos; at = dump.find('{', at + 1)) {
    items.push_back(dump.substr(at, dump.find('}', at) + 1 - at));
  }
  return items;
}

// A message gives its attachments as the attachments kind gives them (an
// attachment row without a file name among them, with `present` false); a
// message without any has no "attachments".
TEST(CurrentAttachments, EachMessageCarriesItsAttachmentsAsTheAttachmentsKindGivesThem) {
  TempDir root;
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase("HomeDomain", "Library/SMS/sms.db",
                   Attachments("sms.db-ios13") +
                       "INSERT INTO handle (ROWID, id, service) VALUES (1, '+16175550199', 'iMessage');\n"
                       "INSERT INTO chat (ROWID, guid, style, chat_identifier) VALUES (1, 'c', 45, '+16175550199');\n"
                       "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (1, 1);\n"
                       "INSERT INTO message (ROWID, guid, text, handle_id, date, is_from_me) VALUES "
                       "(1, 'm1', 'two', 1, 10, 0), (2, 'm2', 'one', 1, 20, 1), (3, 'm3', 'none', 1, 30, 0);\n"
                       "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 1), (1, 2), (1, 3);\n"
                       "INSERT INTO message_attachment_join (message_id, attachment_id) VALUES "
                       "(1, 2), (1, 1), (2, 4), (2, 3);\n")
      .AddFile("MediaDomain", "Library/SMS/Attachments/ab/12/IMG_0001.HEIC", "heic bytes")
      .AddFile("MediaDomain", "Library/SMS/Attachments/ef/56/Doc", "png");
  ScopedTimeZone utc("UTC");
  ServedBackup served(builder.Write(root.Path() + "b"), Service::Current);
  const std::vector<std::string> attachments = Dictionaries(served.Answer(ContentSmsAttachment));
  ASSERT_EQ(attachments.size(), 4u);
  const std::string messages = served.Answer(ContentSms);
  EXPECT_NE(messages.find("\"attachments\":[" + attachments[0] + "," + attachments[1] + "]"), std::string::npos)
      << messages;
  EXPECT_NE(messages.find("\"attachments\":[" + attachments[2] + "," + attachments[3] + "]"), std::string::npos)
      << messages;
  EXPECT_EQ(messages.find("\"attachments\"", messages.find("none")), std::string::npos) << messages;
}

// Devices store 0 where an attachment has no creation date.
TEST(CurrentAttachments, AStoredDateOfZeroIsNoDate) {
  TempDir root;
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase("HomeDomain", "Library/SMS/sms.db",
                      Schema("sms.db-ios13") +
                          "INSERT INTO attachment (ROWID, guid, original_guid, filename, created_date) VALUES "
                          "(1, 'a', 'a', '~/Library/SMS/Attachments/x.jpg', 0);\n");
  ServedBackup served(builder.Write(root.Path() + "b"), Service::Current);
  EXPECT_NE(served.Answer(ContentSmsAttachment).find("\"date\":\"\""), std::string::npos);
}

TEST(CurrentAttachments, Ios5AttachmentsOfTheMadridTable) {
  TempDir root;
  BackupBuilder builder(IndexKind::Mbdb);
  builder
      .AddDatabase("HomeDomain", "Library/SMS/sms.db",
                   Schema("sms.db-ios5-legacy") +
                       "INSERT INTO madrid_attachment (filename, mime_type) VALUES "
                       "('/var/mobile/Library/SMS/Attachments/00/00/a.jpg', 'image/jpeg');\n")
      .AddFile("MediaDomain", "Library/SMS/Attachments/00/00/a.jpg", "jpg");
  const std::string backup = builder.Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current);
  EXPECT_EQ(served.Answer(ContentSmsAttachment),
            "[{\"file_name\":\"IMG_1.jpg\",\"path\":\"" + backup +
                builder.StoredPath("MediaDomain", "Library/SMS/Attachments/00/00/a.jpg") +
                "\",\"size\":3u,\"type\":0u,\"query_path\":\"Library/SMS/Attachments/00/00/a.jpg\",\"present\":true,"
                "\"mime_type\":\"image/jpeg\",\"original_name\":\"\",\"date\":\"\"}]");
}

TEST(CurrentAttachments, NoMessageDatabaseAnswersNull) {
  TempDir root;
  ServedBackup served(BackupBuilder(IndexKind::ManifestDb).Write(root.Path() + "b"), Service::Current);
  EXPECT_EQ(served.Answer(ContentSmsAttachment), "null");
}

}  // namespace
}  // namespace yhtest
