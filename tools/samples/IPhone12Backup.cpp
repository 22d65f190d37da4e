#include "SampleData.h"
#include "Samples.h"
#include "support/BackupBuilder.h"
#include "support/NoteStoreBody.h"

namespace samples {
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::Schema;

const char kFolder[] = "00008101-001C24E83A91401E";
const char kHome[] = "HomeDomain";
const char kMedia[] = "MediaDomain";
const char kCameraRoll[] = "CameraRollDomain";
const char kNotes[] = "AppDomainGroup-group.com.apple.notes";
const char kSafari[] = "AppDomain-com.apple.mobilesafari";
const char kWhatsApp[] = "AppDomainGroup-group.net.whatsapp.WhatsApp.shared";
const char kAurora[] = "Media/16175550199@s.whatsapp.net/4/2/4A2B9C1D-7E3F-4A5B-8C6D-9E0F1A2B3C4D.jpg";
const char kAuroraThumb[] = "Media/16175550199@s.whatsapp.net/4/2/4A2B9C1D-7E3F-4A5B-8C6D-9E0F1A2B3C4D.thumb";
const char kVoiceNote[] = "Media/120363025846130022@g.us/c/3/C3D4E5F6-0718-4293-A4B5-C6D7E8F90A1B.opus";
const char kPicture[] = "Library/SMS/Attachments/3a/10/8A1D5E6F-1B2C-4D3E-9F00-112233445566/IMG_0412.HEIC";
const char kItinerary[] = "Library/SMS/Attachments/77/07/C0FFEE00-1234-4ABC-8DEF-0123456789AB/Itinerary.pdf";
// What a message that only carries an attachment holds as its text.
const char kObjectReplacement[] = "\xEF\xBF\xBC";
constexpr int kYear = 2023;

std::string Time(int month, int day, int hour, int minute, int second) {
  return Since2001Text(kYear, month, day, hour, minute, second);
}

std::string AddressBook() {
  return Schema("AddressBook.sqlitedb-ios15") +
         Insert("ABPerson", "ROWID, First, Last, Organization, JobTitle, Nickname, CreationDate, ModificationDate",
                {{"1", Sql("Charles"), Sql("Babbage"), Sql("Analytical Engines Ltd"), Sql("Inventor"), "NULL",
                  Time(2, 11, 10, 0, 0), Time(8, 30, 17, 5, 0)},
                 {"2", Sql("Mary"), Sql("Somerville"), "NULL", "NULL", "NULL", Time(4, 2, 16, 45, 0),
                  Time(4, 2, 16, 45, 0)},
                 {"3", Sql("Alan"), Sql("Turing"), Sql("Bletchley Park"), Sql("Cryptanalyst"), Sql("Prof"),
                  Time(6, 23, 9, 30, 0), Time(9, 1, 12, 0, 0)}}) +
         Insert("ABMultiValueLabel", "ROWID, value",
                {{"1", Sql("_$!<Mobile>!$_")},
                 {"2", Sql("_$!<Work>!$_")},
                 {"3", Sql("iPhone")},
                 {"4", Sql("_$!<Home>!$_")}}) +
         // Property 3 is a phone number, 4 an e-mail address.
         Insert("ABMultiValue", "UID, record_id, property, identifier, label, value",
                {{"1", "1", "3", "0", "1", Sql("+44 20 7946 0018")},
                 {"2", "1", "4", "0", "2", Sql("charles@example.org")},
                 {"3", "2", "3", "0", "3", Sql("+1 (617) 555-0199")},
                 {"4", "2", "4", "0", "4", Sql("mary.somerville@example.com")},
                 {"5", "3", "4", "0", "4", Sql("alan.turing@example.com")}});
}

// Rows deleted without overwriting them, as a device leaves them, so that
// the sample has deleted records to give back.
const char kUnsecured[] = "PRAGMA secure_delete=OFF;\n";

// Charles's picture, whole and as a thumbnail; Mary's a thumbnail alone.
std::string ContactPictures() {
  return Schema("AddressBookImages.sqlitedb-ios9") +
         Insert("ABFullSizeImage", "ROWID, record_id, crop_x, crop_y, crop_width, data",
                {{"1", "1", "0", "0", "320", yhtest::SqlBlob(JpegSample(320, 320, 51))}}) +
         Insert("ABThumbnailImage", "ROWID, record_id, format, derived_from_format, data",
                {{"1", "1", "0", "2", yhtest::SqlBlob(JpegSample(120, 120, 52))},
                 {"2", "2", "0", "2", yhtest::SqlBlob(JpegSample(120, 120, 53))}});
}

// ZORIGINATED 0 is an incoming call, 1 an outgoing one; dates and durations
// carry fractions of a second. The owner deleted a fifth call.
std::string CallHistory() {
  return kUnsecured + Schema("CallHistory.storedata-ios17") +
         Insert(
             "ZCALLRECORD",
             "Z_PK, Z_ENT, Z_OPT, ZADDRESS, ZDATE, ZDURATION, ZORIGINATED, ZANSWERED, ZCALLTYPE, ZNAME, "
             "ZISO_COUNTRY_CODE, ZSERVICE_PROVIDER, ZLOCATION, ZUNIQUE_ID",
             {{"1", "2", "1", Sql("+442079460018"), Time(9, 10, 10, 15, 2) + ".4", "734.6", "0", "1", "1", "NULL",
               Sql("gb"), Sql("com.apple.Telephony"), Sql("United Kingdom"),
               Sql("6B1E2A90-4F1D-4C8B-9A51-0F6E2D7C3B11")},
              {"2", "2", "1", Sql("+16175550199"), Time(9, 11, 17, 2, 45) + ".8", "1520.2", "1", "1", "8", "NULL",
               Sql("us"), Sql("com.apple.FaceTime"), Sql("Massachusetts"), Sql("0D5C4B3A-2918-4F7E-8D6C-5B4A39281722")},
              {"3", "2", "1", Sql("+14155550100"), Time(9, 12, 7, 58, 10) + ".1", "0", "0", "0", "1", "NULL", Sql("us"),
               Sql("com.apple.Telephony"), Sql("California"), Sql("C3D2E1F0-A9B8-4C7D-8E6F-5A4B3C2D1E33")},
              {"4", "2", "1", Sql("alan.turing@example.com"), Time(9, 12, 8, 20, 30), "95.0", "1", "1", "16",
               Sql("Alan Turing"), Sql(""), Sql("com.apple.FaceTime"), "NULL",
               Sql("9E8D7C6B-5A49-4382-9170-6F5E4D3C2B44")},
              {"5", "2", "1", Sql("+442079460018"), Time(9, 11, 19, 4, 12), "61.0", "1", "1", "1", "NULL",
               Sql("gb"), Sql("com.apple.Telephony"), Sql("United Kingdom"),
               Sql("5A4B3C2D-1E0F-4A9B-8C7D-6E5F4A3B2C55")}}) +
         "DELETE FROM ZCALLRECORD WHERE Z_PK = 5;\n";
}

// Newer devices count message dates in nanoseconds; the library takes whole
// seconds, so the sample keeps seconds to show dates that read well. The
// owner deleted a message of Mary's conversation.
std::string Messages() {
  return kUnsecured + Schema("sms.db-ios13") +
         Insert("handle", "ROWID, id, country, service",
                {{"1", Sql("+16175550199"), Sql("us"), Sql("iMessage")},
                 {"2", Sql("+442079460018"), Sql("gb"), Sql("SMS")}}) +
         Insert("chat", "ROWID, guid, style, chat_identifier, service_name",
                {{"1", Sql("iMessage;-;+16175550199"), "45", Sql("+16175550199"), Sql("iMessage")},
                 {"2", Sql("SMS;-;+442079460018"), "45", Sql("+442079460018"), Sql("SMS")}}) +
         Insert("message", "ROWID, guid, text, handle_id, country, service, date, is_from_me",
                {{"1", Sql("7C1D2E3F-0001"), Sql("Did you see the comet last night?"), "1", Sql("us"), Sql("iMessage"),
                  Time(9, 11, 7, 30, 5), "0"},
                 {"2", Sql("7C1D2E3F-0002"), Sql("Only on the photos. Send me yours!"), "1", Sql("us"), Sql("iMessage"),
                  Time(9, 11, 7, 32, 40), "1"},
                 {"3", Sql("7C1D2E3F-0003"), Sql(kObjectReplacement), "1", Sql("us"), Sql("iMessage"),
                  Time(9, 11, 7, 35, 12), "0"},
                 {"4", Sql("7C1D2E3F-0004"), Sql("Train delayed, starting at 10:30 instead"), "2", Sql("gb"),
                  Sql("SMS"), Time(9, 10, 9, 48, 0), "0"},
                 {"5", Sql("7C1D2E3F-0005"), Sql("No problem, I will bring the tickets."), "2", Sql("gb"), Sql("SMS"),
                  Time(9, 10, 9, 50, 21), "1"},
                 {"6", Sql("7C1D2E3F-0006"), Sql("Forget the comet, it was a satellite."), "1", Sql("us"),
                  Sql("iMessage"), Time(9, 11, 7, 33, 58), "1"}}) +
         Insert("attachment", "ROWID, guid, filename, mime_type, transfer_name, total_bytes, original_guid",
                {{"1", Sql("at_0_7C1D2E3F-0003"), Sql(std::string("~/") + kPicture), Sql("image/heic"),
                  Sql("IMG_0412.HEIC"), "4012", Sql("at_0_7C1D2E3F-0003")},
                 {"2", Sql("at_0_7C1D2E3F-0004"), Sql(std::string("~/") + kItinerary), Sql("application/pdf"),
                  Sql("Itinerary.pdf"), "1208", Sql("at_0_7C1D2E3F-0004")}}) +
         Insert("message_attachment_join", "message_id, attachment_id", {{"3", "1"}, {"4", "2"}}) +
         "DELETE FROM message WHERE ROWID = 6;\n";
}

std::string Notes() {
  return Schema("NoteStore.sqlite-ios17") +
         Insert("ZICCLOUDSYNCINGOBJECT", "Z_PK, ZCREATIONDATE, ZMODIFICATIONDATE1, ZTITLE1, ZNOTEDATA",
                {{"1", Time(8, 30, 19, 2, 0), Time(9, 8, 22, 14, 9), Sql("Packing list"), "1"},
                 {"2", Time(9, 1, 12, 0, 0), Time(9, 4, 18, 30, 0), Sql("Book club"), "2"}}) +
         Insert("ZICNOTEDATA", "Z_PK, ZNOTE, ZDATA",
                {{"1", "1", NoteStoreData("Packing list\nPassport\nCharger\nSunscreen")},
                 {"2", "2", NoteStoreData("Book club\nNext: The Difference Engine, 4 October")}});
}

std::string SafariHistory() {
  return Schema("History.db-safari") +
         Insert("history_items",
                "id, url, visit_count, daily_visit_counts, should_recompute_derived_visit_counts, visit_count_score",
                {{"1", Sql("https://www.apple.com/iphone/"), "2", "x'00'", "0", "200"},
                 {"2", Sql("https://en.wikipedia.org/wiki/Analytical_engine"), "1", "x'00'", "0", "100"}}) +
         Insert("history_visits", "id, history_item, visit_time, title",
                {{"1", "1", Time(9, 9, 20, 15, 33) + ".25", Sql("iPhone - Apple")},
                 {"2", "2", Time(9, 10, 21, 40, 2) + ".5", Sql("Analytical engine - Wikipedia")},
                 {"3", "1", Time(9, 11, 8, 5, 47) + ".75", Sql("iPhone - Apple")}});
}

// Entries of the Birthdays and Reminders calendars are reminders.
std::string Calendar() {
  return Schema("Calendar.sqlitedb-ios18") +
         Insert("Calendar", "ROWID, title",
                {{"1", Sql("Home")}, {"2", Sql("Work")}, {"3", Sql("Birthdays")}, {"4", Sql("Reminders")}}) +
         Insert("Location", "ROWID, title, latitude, longitude",
                {{"1", Sql("Royal Institution, 21 Albemarle Street"), "51.5099", "-0.1425"}}) +
         // Mary organises the lecture (entity type 8) and invites Charles (7).
         Insert("Identity", "ROWID, display_name, address, first_name, last_name",
                {{"1", Sql("Mary Somerville"), Sql("mailto:mary.somerville@example.com"), "NULL", "NULL"},
                 {"2", "NULL", Sql("mailto:charles@example.org"), Sql("Charles"), Sql("Babbage")}}) +
         Insert("Participant", "ROWID, entity_type, identity_id, owner_id, email",
                {{"1", "8", "1", "1", Sql("mary.somerville@example.com")},
                 {"2", "7", "2", "1", Sql("charles@example.org")}}) +
         Insert("CalendarItem",
                "ROWID, summary, location_id, description, url, start_date, end_date, start_tz, all_day, status, "
                "calendar_id, organizer_id",
                {{"1", Sql("Evening lecture"), "1", Sql("Tickets in the wallet"), Sql("https://www.rigb.org/"),
                  Time(9, 20, 18, 0, 0), Time(9, 20, 19, 30, 0), Sql("Europe/London"), "0", "0", "1", "1"},
                 {"2", Sql("Sprint review"), "NULL", "NULL", "NULL", Time(9, 14, 14, 0, 0), Time(9, 14, 15, 0, 0),
                  Sql("Europe/London"), "0", "0", "2", "NULL"},
                 {"3", Sql("Water the plants"), "NULL", "NULL", "NULL", Time(9, 13, 7, 0, 0), Time(9, 13, 7, 0, 0),
                  Sql("Europe/London"), "0", "1", "4", "NULL"},
                 {"4", Sql("Call the bank"), "NULL", Sql("About the new card"), "NULL", Time(9, 15, 9, 0, 0),
                  Time(9, 15, 9, 0, 0), Sql("Europe/London"), "0", "0", "4", "NULL"},
                 {"5", Sql("Mary Somerville’s Birthday"), "NULL", "NULL", "NULL", Time(12, 26, 0, 0, 0),
                  Time(12, 27, 0, 0, 0), Sql("_float"), "1", "0", "3", "NULL"}});
}

std::string VoiceMemos() {
  return Schema("Recordings.db-ios7") +
         Insert(
             "ZRECORDING", "Z_PK, ZDATE, ZDURATION, ZPATH, ZCUSTOMLABEL",
             {{"1", Time(8, 29, 18, 15, 2), "1834.7", Sql("/var/mobile/Media/Recordings/20230829 181502.m4a"),
               Sql("Band rehearsal")},
              {"2", Time(9, 5, 7, 30, 11), "63.2", Sql("/var/mobile/Media/Recordings/20230905 073011.m4a"), "NULL"}});
}

// Voicemail dates count from 1970; the flag 1 marks a heard message, a
// trashed date or the flag 8 one the owner deleted.
std::string Voicemail() {
  return Schema("voicemail.db-ios9") +
         Insert("voicemail",
                "ROWID, remote_uid, date, token, sender, callback_num, duration, expiration, trashed_date, flags",
                {{"1", "7", Since1970Text(kYear, 9, 8, 12, 4, 51), Sql("Complete"), Sql("+16175550199"),
                  Sql("+16175550199"), "41", "0", "0", "2"},
                 {"2", "8", Since1970Text(kYear, 9, 11, 16, 20, 9), Sql("Complete"), Sql("+14155550100"),
                  Sql("+14155550100"), "18", "0", Time(9, 11, 18, 0, 0), "11"}});
}

std::string Photos() {
  return Schema("Photos.sqlite-ios7") + Insert("ZGENERICASSET", "Z_PK, ZDIRECTORY, ZFILENAME",
                                               {{"1", Sql("DCIM/100APPLE"), Sql("IMG_0415.HEIC")},
                                                {"2", Sql("DCIM/100APPLE"), Sql("IMG_0416.HEIC")},
                                                {"3", Sql("DCIM/100APPLE"), Sql("IMG_0417.JPG")},
                                                {"4", Sql("PhotoData/Sync/100SYNCD"), Sql("IMG_0950.JPG")}});
}

// A chat with Mary (a captioned picture, a starred message) and a group
// whose owner replies to Charles and receives a voice note from Mary. The
// reply's medium names the quoted message in its metadata: field 5 its
// stanza id, field 6 its sender (a protocol buffer). The owner deleted a
// message sent to Mary.
std::string WhatsAppChats() {
  const std::string quoted =
      std::string("\x2A\x0A", 2) + "3A0B5C7D9E" + std::string("\x32\x1B", 2) + "442079460018@s.whatsapp.net";
  const std::string mary = Sql("16175550199@s.whatsapp.net");
  const std::string group = Sql("120363025846130022@g.us");
  return kUnsecured + Schema("ChatStorage.sqlite-whatsapp-ios15") +
         Insert("ZWACHATSESSION", "Z_PK, ZCONTACTJID, ZPARTNERNAME, ZSESSIONTYPE",
                {{"1", mary, Sql("Mary Somerville"), "0"}, {"2", group, Sql("Analytical Society"), "1"}}) +
         Insert("ZWAGROUPMEMBER", "Z_PK, ZCHATSESSION, ZMEMBERJID",
                {{"1", "2", mary}, {"2", "2", Sql("442079460018@s.whatsapp.net")}}) +
         Insert("ZWAPROFILEPUSHNAME", "Z_PK, ZJID, ZPUSHNAME",
                {{"1", Sql("442079460018@s.whatsapp.net"), Sql("Charles")}}) +
         Insert("ZWAMEDIAITEM",
                "Z_PK, ZMEDIALOCALPATH, ZTHUMBNAILLOCALPATH, ZTITLE, ZVCARDSTRING, ZFILESIZE, ZMETADATA",
                {{"1", Sql(kAurora), Sql(kAuroraThumb), Sql("Aurora over the bay"), Sql("image/jpeg"), "2900", "NULL"},
                 {"2", Sql(kVoiceNote), "NULL", "NULL", Sql("audio/ogg; codecs=opus"), "1700", "NULL"},
                 {"3", "NULL", "NULL", "NULL", "NULL", "NULL", yhtest::SqlBlob(quoted)}}) +
         Insert(
             "ZWAMESSAGE",
             "Z_PK, ZCHATSESSION, ZISFROMME, ZMESSAGEDATE, ZMESSAGETYPE, ZTEXT, ZSTARRED, ZFROMJID, ZTOJID, "
             "ZSTANZAID, ZGROUPMEMBER, ZMEDIAITEM",
             {{"1", "1", "0", Time(9, 11, 19, 2, 10), "0", Sql("Are you coming to the lecture tomorrow?"), "0", mary,
               "NULL", Sql("3A0B5C7D9A"), "NULL", "NULL"},
              {"2", "1", "1", Time(9, 11, 19, 5, 44), "0", Sql("Yes, I will bring the notes."), "1", "NULL", mary,
               Sql("3A0B5C7D9B"), "NULL", "NULL"},
              {"3", "1", "0", Time(9, 11, 21, 30, 2), "1", "NULL", "0", mary, "NULL", Sql("3A0B5C7D9C"), "NULL", "1"},
              {"4", "2", "0", Time(9, 12, 7, 12, 0), "0", Sql("The engine drawings are ready."), "0", group, "NULL",
               Sql("3A0B5C7D9E"), "2", "NULL"},
              {"5", "2", "1", Time(9, 12, 7, 15, 31), "0", Sql("Wonderful, send them over!"), "0", "NULL", group,
               Sql("3A0B5C7D9F"), "NULL", "3"},
              {"6", "2", "0", Time(9, 12, 7, 20, 9), "3", "NULL", "0", group, "NULL", Sql("3A0B5C7DA0"), "1", "2"},
              {"7", "1", "1", Time(9, 11, 19, 3, 30), "0", Sql("Which room is it in?"), "0", "NULL", mary,
               Sql("3A0B5C7DA1"), "NULL", "NULL"}}) +
         "DELETE FROM ZWAMESSAGE WHERE Z_PK = 7;\n";
}

// An incoming audio call from Mary and an outgoing group video call.
std::string WhatsAppCalls() {
  return Schema("CallHistory.sqlite-whatsapp-ios15") +
         Insert("ZWAAGGREGATECALLEVENT", "Z_PK, ZINCOMING, ZMISSED, ZVIDEO, ZFIRSTDATE",
                {{"1", "1", "0", "0", Time(9, 10, 18, 0, 0)}, {"2", "0", "0", "1", Time(9, 11, 20, 0, 0)}}) +
         Insert("ZWACDCALLEVENT", "Z_PK, Z1CALLEVENTS, ZDATE, ZDURATION, ZOUTCOME, ZGROUPJIDSTRING",
                {{"1", "1", Time(9, 10, 18, 0, 0), "312.0", "0", "NULL"},
                 {"2", "2", Time(9, 11, 20, 0, 0), "1260.5", "0", Sql("120363025846130022@g.us")}}) +
         Insert("ZWACDCALLEVENTPARTICIPANT", "Z_PK, Z1PARTICIPANTS, ZJIDSTRING",
                {{"1", "1", Sql("16175550199@s.whatsapp.net")},
                 {"2", "2", Sql("16175550199@s.whatsapp.net")},
                 {"3", "2", Sql("442079460018@s.whatsapp.net")}});
}

}  // namespace

void WriteIPhone12Backup(const std::string& backups) {
  const int64_t backedUp = UnixTime(kYear, 9, 12, 8, 41, 17);
  BackupBuilder(IndexKind::ManifestDb)
      .InfoString("Device Name", "Ada’s iPhone")
      .InfoString("Display Name", "Ada’s iPhone")
      .InfoString("Product Name", "iPhone 12")
      .InfoString("Product Type", "iPhone13,2")
      .InfoString("Product Version", "15.8")
      .InfoString("Build Version", "19H370")
      .InfoString("Serial Number", "G6TDX2MLPQ")
      .InfoString("Unique Identifier", kFolder)
      .InfoString("Target Identifier", kFolder)
      .InfoString("Target Type", "Device")
      .InfoString("Phone Number", "+44 7700 900123")
      .InfoDate("Last Backup Date", backedUp)
      .ManifestBool("IsEncrypted", false)
      .ManifestBool("WasPasscodeSet", true)
      .ManifestDate("Date", backedUp)
      .LockdownString("DeviceName", "Ada’s iPhone")
      .LockdownString("ProductType", "iPhone13,2")
      .LockdownString("ProductVersion", "15.8")
      .LockdownString("BuildVersion", "19H370")
      .LockdownString("SerialNumber", "G6TDX2MLPQ")
      .LockdownString("UniqueDeviceID", kFolder)
      .AddDatabase(kHome, "Library/AddressBook/AddressBook.sqlitedb", AddressBook())
      .AddDatabase(kHome, "Library/AddressBook/AddressBookImages.sqlitedb", ContactPictures())
      .AddDatabase(kHome, "Library/CallHistoryDB/CallHistory.storedata", CallHistory())
      .AddDatabase(kHome, "Library/SMS/sms.db", Messages())
      .AddFile(kMedia, kPicture, HeicSample(640, 480, 21))
      .AddFile(kMedia, kItinerary, MediaFile("%PDF-1.7\n", 1200, 22))
      .AddDatabase(kNotes, "NoteStore.sqlite", Notes())
      .AddDatabase(kSafari, "Library/Safari/History.db", SafariHistory())
      .AddDatabase(kHome, "Library/Calendar/Calendar.sqlitedb", Calendar())
      .AddDatabase(kMedia, "Media/Recordings/Recordings.db", VoiceMemos())
      .AddFile(kMedia, "Media/Recordings/20230829 181502.m4a", MediaFile(kM4a, 6400, 3))
      .AddFile(kMedia, "Media/Recordings/20230905 073011.m4a", MediaFile(kM4a, 900, 4))
      .AddDatabase(kCameraRoll, "Media/PhotoData/Photos.sqlite", Photos())
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0415.HEIC", HeicSample(1200, 900, 31))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0416.HEIC", HeicSample(900, 1200, 32))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0417.JPG", MediaFile(kJpeg, 3300, 33))
      .AddFile(kCameraRoll, "Media/PhotoData/Sync/100SYNCD/IMG_0950.JPG", MediaFile(kJpeg, 2800, 34))
      .AddDatabase(kHome, "Library/Voicemail/voicemail.db", Voicemail())
      .AddFile(kHome, "Library/Voicemail/1.amr", MediaFile(kAmr, 3100, 5))
      .AddFile(kHome, "Library/Voicemail/2.amr", MediaFile(kAmr, 1400, 6))
      .AddDatabase(kWhatsApp, "ChatStorage.sqlite", WhatsAppChats())
      .AddDatabase(kWhatsApp, "CallHistory.sqlite", WhatsAppCalls())
      .AddFile(kWhatsApp, std::string("Message/") + kAurora, MediaFile(kJpeg, 2900, 41))
      .AddFile(kWhatsApp, std::string("Message/") + kAuroraThumb, MediaFile(kJpeg, 300, 42))
      .AddFile(kWhatsApp, std::string("Message/") + kVoiceNote, MediaFile("OggS", 1700, 43))
      .Write(backups + "/" + kFolder);
}

}  // namespace samples
