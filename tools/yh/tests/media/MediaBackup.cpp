#include "MediaBackup.h"

#include <vector>

#include "MediaFiles.h"
#include "support/BackupBuilder.h"

namespace yhmedia {
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;

// Seconds from 2001-01-01 UTC, as the photo library and messages count.
const char kAugust14[] = "713700000";     // 2023-08-14 10:00:00
const char kSeptember2[] = "715350600";   // 2023-09-02 12:30:00
const char kSeptember3[] = "715420800";   // 2023-09-03 08:00:00
const char kSeptember4[] = "715514400";   // 2023-09-04 10:00:00
const char kSeptember5a[] = "715597200";  // 2023-09-05 09:00:00
const char kSeptember5b[] = "715597260";  // 2023-09-05 09:01:00
const char kSeptember5c[] = "715597320";  // 2023-09-05 09:02:00
// Voicemail counts from 1970.
const char kVoicemail1[] = "1694246400";  // 2023-09-09 08:00:00
const char kVoicemail2[] = "1694332800";  // 2023-09-10 08:00:00

const char kPicture[] = "Library/SMS/Attachments/0a/10/1A2B3C4D-0001/IMG_0201.HEIC";
const char kDocument[] = "Library/SMS/Attachments/0b/11/1A2B3C4D-0002/Tickets.pdf";
const char kLost[] = "Library/SMS/Attachments/0c/12/1A2B3C4D-0003/IMG_0203.JPG";

std::string Photos() {
  return yhtest::Schema("Photos.sqlite-ios7") +
         "INSERT INTO ZGENERICASSET (Z_PK, ZDIRECTORY, ZFILENAME, ZDATECREATED, ZKIND) VALUES "
         "(1, 'DCIM/100APPLE', 'IMG_0101.HEIC', " + kAugust14 + ", 0), "
         "(2, 'DCIM/100APPLE', 'IMG_0102.JPG', " + kSeptember2 + ", 0), "
         "(3, 'DCIM/100APPLE', 'IMG_0103.MOV', " + kSeptember3 + ", 1), "
         "(4, 'DCIM/100APPLE', 'IMG_0104.HEIC', " + kSeptember4 + ", 0);\n";
}

std::string Messages() {
  const std::string obj = "'\xEF\xBF\xBC'";
  return yhtest::Schema("sms.db-ios13") +
         "INSERT INTO handle (ROWID, id, country, service) VALUES (1, '+16175550123', 'us', 'iMessage');\n"
         "INSERT INTO chat (ROWID, guid, style, chat_identifier, service_name) VALUES "
         "(1, 'iMessage;-;+16175550123', 45, '+16175550123', 'iMessage');\n"
         "INSERT INTO message (ROWID, guid, text, handle_id, service, date, is_from_me) VALUES "
         "(1, 'm1', 'The view from the top' || " + obj + ", 1, 'iMessage', " + kSeptember5a + ", 0), "
         "(2, 'm2', " + obj + ", 1, 'iMessage', " + kSeptember5b + ", 1), "
         "(3, 'm3', " + obj + ", 1, 'iMessage', " + kSeptember5c + ", 0);\n"
         "INSERT INTO chat_message_join (chat_id, message_id) VALUES (1, 1), (1, 2), (1, 3);\n"
         "INSERT INTO chat_handle_join (chat_id, handle_id) VALUES (1, 1);\n"
         "INSERT INTO attachment (ROWID, guid, created_date, filename, mime_type, transfer_name, total_bytes, "
         "original_guid) VALUES "
         "(1, 'a1', " + kSeptember5a + ", '~/" + kPicture + "', 'image/heic', 'IMG_0201.HEIC', 0, 'a1'), "
         "(2, 'a2', " + kSeptember5b + ", '~/" + kDocument + "', 'application/pdf', 'Tickets.pdf', 0, 'a2'), "
         "(3, 'a3', " + kSeptember5c + ", '~/" + kLost + "', 'image/jpeg', 'IMG_0203.JPG', 0, 'a3');\n"
         "INSERT INTO message_attachment_join (message_id, attachment_id) VALUES (1, 1), (2, 2), (3, 3);\n";
}

std::string Voicemail() {
  return yhtest::Schema("voicemail.db-ios9") +
         "INSERT INTO voicemail (ROWID, remote_uid, date, token, sender, callback_num, duration, expiration, "
         "trashed_date, flags) VALUES "
         "(1, 1, " + kVoicemail1 + ", 'Complete', '+16175550123', '+16175550123', 2, 0, 0, 2), "
         "(2, 2, " + kVoicemail2 + ", 'Complete', '+16175550124', '+16175550124', 5, 0, 0, 2);\n";
}

}  // namespace

const char kMediaBackupFolder[] = "00008110-001A2B3C4D5E6F70";

std::string WriteMediaBackup(const std::string& backups) {
  return BackupBuilder(IndexKind::ManifestDb)
      .InfoString("Device Name", "Lin’s iPhone")
      .InfoString("Product Type", "iPhone14,5")
      .InfoString("Product Version", "16.6")
      .InfoString("Unique Identifier", kMediaBackupFolder)
      .AddDatabase("CameraRollDomain", "Media/PhotoData/Photos.sqlite", Photos())
      .AddFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0101.HEIC", HeicPicture(1200, 900))
      .AddFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0102.JPG", JpegPicture(800, 600))
      .AddFile("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0103.MOV", std::string("\0\0\0\x14" "ftypqt  ", 12))
      .AddDatabase("HomeDomain", "Library/SMS/sms.db", Messages())
      .AddFile("MediaDomain", kPicture, HeicPicture(640, 480))
      .AddFile("MediaDomain", kDocument, "%PDF-1.7\n% tickets\n")
      .AddDatabase("HomeDomain", "Library/Voicemail/voicemail.db", Voicemail())
      .AddFile("HomeDomain", "Library/Voicemail/1.amr", AmrSound(2000))
      .Write(backups + "/" + kMediaBackupFolder);
}

}  // namespace yhmedia
