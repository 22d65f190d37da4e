#include <plist/plist.h>

#include <cstdlib>

#include "SampleData.h"
#include "Samples.h"
#include "support/BackupBuilder.h"

namespace samples {
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::Schema;

const char kFolder[] = "5d2f3b8e9a1c4d7f6e0b2a9c8d7e6f5a4b3c2d1e";
const char kHome[] = "HomeDomain";
const char kMedia[] = "MediaDomain";
const char kCameraRoll[] = "CameraRollDomain";
const char kPicture[] = "Library/SMS/Attachments/4f/15/5E1C0A7B-2D3F-4E8A-9B6C-1D2E3F4A5B6C/IMG_0042.JPG";
const char kVoiceMessage[] = "Library/SMS/Attachments/8c/02/0B9A8C7D-6E5F-4A3B-2C1D-0E9F8A7B6C5D/Audio Message.caf";
constexpr int kYear = 2014;

// Most databases count seconds from 2001; the old call history from 1970.
std::string Time(int month, int day, int hour, int minute, int second) {
  return Since2001Text(kYear, month, day, hour, minute, second);
}
std::string Time1970(int month, int day, int hour, int minute, int second) {
  return Since1970Text(kYear, month, day, hour, minute, second);
}

std::string AddressBook() {
  return Schema("AddressBook.sqlitedb-ios7") +
         Insert("ABPerson", "ROWID, First, Last, Organization, JobTitle, Nickname, Birthday, CreationDate",
                {{"1", Sql("John"), Sql("Appleseed"), Sql("Apple Inc."), Sql("Product Manager"), "NULL", "NULL",
                  Time(1, 14, 9, 12, 0)},
                 {"2", Sql("Kate"), Sql("Bell"), Sql("Creative Consulting"), Sql("Producer"), "NULL", "NULL",
                  Time(2, 3, 18, 30, 0)},
                 {"3", Sql("Anna"), Sql("Haro"), "NULL", "NULL", Sql("Annie"), Sql("-406252800"),
                  Time(3, 22, 12, 0, 0)}}) +
         Insert("ABMultiValueLabel", "ROWID, value",
                {{"1", Sql("_$!<Mobile>!$_")}, {"2", Sql("_$!<Work>!$_")}, {"3", Sql("_$!<Home>!$_")}}) +
         // Property 3 is a phone number, 4 an e-mail address.
         Insert("ABMultiValue", "UID, record_id, property, identifier, label, value",
                {{"1", "1", "3", "0", "1", Sql("+1 (408) 555-0123")},
                 {"2", "1", "4", "0", "2", Sql("john.appleseed@example.com")},
                 {"3", "2", "3", "0", "1", Sql("+1 (555) 564-8583")},
                 {"4", "2", "4", "0", "3", Sql("kate-bell@example.com")},
                 {"5", "3", "3", "0", "1", Sql("+1 (555) 522-8243")},
                 {"6", "3", "4", "0", "3", Sql("anna-haro@example.com")}});
}

// Flags 4 is an incoming call, 5 an outgoing one.
std::string CallHistory() {
  return Schema("call_history.db-ios7") +
         Insert("call", "ROWID, address, date, duration, flags, id, name, country_code, network_code, read, answered",
                {{"1", Sql("+14085550123"), Time1970(7, 1, 9, 15, 32), "312", "4", "-1", "NULL", Sql("310"), Sql("410"),
                  "1", "1"},
                 {"2", Sql("+15555648583"), Time1970(7, 2, 18, 40, 5), "95", "5", "-1", "NULL", Sql("310"), Sql("410"),
                  "1", "1"},
                 {"3", Sql("+442079460000"), Time1970(7, 3, 12, 5, 47), "0", "4", "-1", "NULL", Sql("310"), Sql("410"),
                  "1", "0"},
                 {"4", Sql("+15555228243"), Time1970(7, 4, 8, 30, 0), "1260", "5", "-1", Sql("Anna Haro"), Sql("310"),
                  Sql("410"), "1", "1"}});
}

std::string Messages() {
  return Schema("sms.db-ios7") +
         Insert("handle", "ROWID, id, country, service",
                {{"1", Sql("+14085550123"), Sql("us"), Sql("SMS")},
                 {"2", Sql("+15555648583"), Sql("us"), Sql("iMessage")}}) +
         Insert("chat", "ROWID, guid, style, chat_identifier, service_name",
                {{"1", Sql("SMS;-;+14085550123"), "45", Sql("+14085550123"), Sql("SMS")},
                 {"2", Sql("iMessage;-;+15555648583"), "45", Sql("+15555648583"), Sql("iMessage")}}) +
         Insert("message", "ROWID, guid, text, handle_id, country, service, date, is_from_me",
                {{"1", Sql("A1F3C2D4-0001"), Sql("Are we still on for lunch tomorrow?"), "1", Sql("us"), Sql("SMS"),
                  Time(7, 1, 10, 2, 11), "0"},
                 {"2", Sql("A1F3C2D4-0002"), Sql("Yes, 12:30 at the usual place."), "1", Sql("us"), Sql("SMS"),
                  Time(7, 1, 10, 3, 40), "1"},
                 {"3", Sql("A1F3C2D4-0003"), Sql("Great, see you there!"), "1", Sql("us"), Sql("SMS"),
                  Time(7, 1, 10, 4, 2), "0"},
                 {"4", Sql("A1F3C2D4-0004"), Sql("Here are the photos from Saturday"), "2", "NULL", Sql("iMessage"),
                  Time(7, 2, 19, 15, 0), "0"},
                 {"5", Sql("A1F3C2D4-0005"), Sql("Thanks! They look great."), "2", "NULL", Sql("iMessage"),
                  Time(7, 2, 19, 20, 31), "1"}}) +
         Insert("attachment", "ROWID, guid, filename, mime_type, transfer_name, total_bytes",
                {{"1", Sql("at_0_A1F3C2D4-0004"), Sql(std::string("~/") + kPicture), Sql("image/jpeg"),
                  Sql("IMG_0042.JPG"), "3010"},
                 {"2", Sql("at_0_A1F3C2D4-0005"), Sql(std::string("~/") + kVoiceMessage), Sql("audio/x-caf"),
                  Sql("Audio Message.caf"), "1806"}});
}

std::string Notes() {
  return Schema("notes.sqlite-ios7") +
         Insert("ZNOTE", "Z_PK, ZCREATIONDATE, ZMODIFICATIONDATE, ZTITLE, ZBODY",
                {{"1", Time(6, 20, 17, 45, 0), Time(7, 3, 8, 12, 30), Sql("Shopping list"), "1"},
                 {"2", Time(6, 28, 21, 5, 0), Time(6, 29, 9, 40, 12), Sql("Trip to Lisbon"), "2"}}) +
         Insert("ZNOTEBODY", "Z_PK, ZOWNER, ZCONTENT",
                {{"1", "1", Sql("Shopping list<div>Milk</div><div>Eggs</div><div>Coffee beans</div>")},
                 {"2", "2",
                  Sql("Trip to Lisbon<div>Flight TP 1363, 3 Aug, 07:05</div><div>Hotel: Rua Augusta 21</div>")}});
}

plist_t Visit(const char* url, const char* title, const std::string& date, uint64_t count) {
  plist_t visit = plist_new_dict();
  plist_dict_set_item(visit, "", plist_new_string(url));
  plist_dict_set_item(visit, "title", plist_new_string(title));
  plist_dict_set_item(visit, "lastVisitedDate", plist_new_string(date.c_str()));
  plist_dict_set_item(visit, "visitCount", plist_new_uint(count));
  return visit;
}

// The browser history of iOS 7 is a binary property list.
std::string SafariHistory() {
  plist_t visits = plist_new_array();
  plist_array_append_item(visits, Visit("https://www.apple.com/ios/", "Apple - iOS 7", Time(7, 3, 21, 2, 3) + ".4", 3));
  plist_array_append_item(visits, Visit("https://en.wikipedia.org/wiki/Ada_Lovelace", "Ada Lovelace - Wikipedia",
                                        Time(7, 4, 7, 45, 10) + ".9", 1));
  plist_t root = plist_new_dict();
  plist_dict_set_item(root, "WebHistoryDates", visits);
  plist_dict_set_item(root, "WebHistoryFileVersion", plist_new_uint(1));
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  std::string history(bytes, length);
  std::free(bytes);
  plist_free(root);
  return history;
}

// Folders have no address and are left out of the answer.
std::string Bookmarks() {
  return Schema("Bookmarks.db-ios7") +
         Insert("bookmarks", "id, special_id, parent, type, title, url, order_index, last_modified",
                {{"0", "0", "NULL", "1", Sql("Root"), "NULL", "0", "NULL"},
                 {"1", "1", "0", "1", Sql("BookmarksBar"), "NULL", "0", Time(1, 5, 10, 0, 0)},
                 {"2", "0", "1", "0", Sql("Apple"), Sql("https://www.apple.com/"), "0", Time(1, 5, 10, 0, 0)},
                 {"3", "0", "1", "0", Sql("The Guardian"), Sql("https://www.theguardian.com/"), "1",
                  Time(5, 17, 8, 20, 44)}});
}

// Entries of the Birthdays and Reminders calendars are reminders.
std::string Calendar() {
  return Schema("Calendar.sqlitedb-ios7") +
         Insert("Calendar", "ROWID, title",
                {{"1", Sql("Home")}, {"2", Sql("Work")}, {"3", Sql("Birthdays")}, {"4", Sql("Reminders")}}) +
         Insert("Location", "ROWID, title",
                {{"1", Sql("Smile Dental, 12 High Street")}, {"2", Sql("Conference Room 2")}}) +
         Insert("CalendarItem",
                "ROWID, summary, location_id, description, url, start_date, end_date, start_tz, all_day, status, "
                "calendar_id",
                {{"1", Sql("Dentist"), "1", Sql("Check-up and cleaning"), "NULL", Time(7, 8, 8, 30, 0),
                  Time(7, 8, 9, 15, 0), Sql("Europe/London"), "0", "0", "1"},
                 {"2", Sql("Team meeting"), "2", Sql("Quarterly planning"), Sql("https://intranet.example.com/q3"),
                  Time(7, 9, 13, 0, 0), Time(7, 9, 14, 0, 0), Sql("Europe/London"), "0", "0", "2"},
                 {"3", Sql("Summer holiday"), "NULL", "NULL", "NULL", Time(8, 1, 0, 0, 0), Time(8, 15, 0, 0, 0),
                  Sql("_float"), "1", "0", "1"},
                 {"4", Sql("Buy a birthday present for Kate"), "NULL", "NULL", "NULL", Time(7, 10, 17, 0, 0),
                  Time(7, 10, 17, 0, 0), Sql("Europe/London"), "0", "0", "4"},
                 {"5", Sql("Renew passport"), "NULL", Sql("Form and two photos"), "NULL", Time(7, 2, 9, 0, 0),
                  Time(7, 2, 9, 0, 0), Sql("Europe/London"), "0", "1", "4"},
                 {"6", Sql("Kate Bell’s Birthday"), "NULL", "NULL", "NULL", Time(1, 20, 0, 0, 0), Time(1, 21, 0, 0, 0),
                  Sql("_float"), "1", "0", "3"}});
}

std::string VoiceMemos() {
  return Schema("Recordings.db-ios7") +
         Insert(
             "ZRECORDING", "Z_PK, ZDATE, ZDURATION, ZPATH, ZCUSTOMLABEL",
             {{"1", Time(6, 12, 9, 30, 15), "754.3", Sql("/var/mobile/Media/Recordings/20140612 093015.m4a"),
               Sql("Lecture notes")},
              {"2", Time(6, 30, 20, 12, 4), "42.0", Sql("/var/mobile/Media/Recordings/20140630 201204.m4a"), "NULL"}});
}

// Voicemail dates count from 1970; the flag 1 marks a heard message.
std::string Voicemail() {
  return Schema("voicemail.db-ios9") +
         Insert("voicemail",
                "ROWID, remote_uid, date, token, sender, callback_num, duration, expiration, trashed_date, flags",
                {{"1", "101", Time1970(7, 3, 17, 45, 20), Sql("Complete"), Sql("+15555648583"), Sql("+15555648583"),
                  "27", "0", "0", "3"}});
}

std::string Photos() {
  return Schema("Photos.sqlite-ios7") + Insert("ZGENERICASSET", "Z_PK, ZDIRECTORY, ZFILENAME",
                                               {{"1", Sql("DCIM/100APPLE"), Sql("IMG_0001.JPG")},
                                                {"2", Sql("DCIM/100APPLE"), Sql("IMG_0002.JPG")},
                                                {"3", Sql("DCIM/100APPLE"), Sql("IMG_0003.PNG")},
                                                {"4", Sql("PhotoData/Sync/100SYNCD"), Sql("IMG_0100.JPG")}});
}

}  // namespace

void WriteIPhone5Backup(const std::string& backups) {
  const int64_t backedUp = UnixTime(kYear, 7, 4, 18, 22, 5);
  BackupBuilder(IndexKind::Mbdb)
      .InfoString("Device Name", "Grace’s iPhone")
      .InfoString("Display Name", "Grace’s iPhone")
      .InfoString("Product Name", "iPhone 5")
      .InfoString("Product Type", "iPhone5,2")
      .InfoString("Product Version", "7.1.2")
      .InfoString("Build Version", "11D257")
      .InfoString("Serial Number", "DNPK8QXZF8H2")
      .InfoString("Unique Identifier", "5D2F3B8E9A1C4D7F6E0B2A9C8D7E6F5A4B3C2D1E")
      .InfoString("Target Identifier", kFolder)
      .InfoString("Phone Number", "+1 (415) 555-0142")
      .InfoString("iTunes Version", "11.3")
      .InfoDate("Last Backup Date", backedUp)
      .ManifestBool("IsEncrypted", false)
      .ManifestBool("WasPasscodeSet", true)
      .ManifestDate("Date", backedUp)
      .LockdownString("DeviceName", "Grace’s iPhone")
      .LockdownString("ProductType", "iPhone5,2")
      .LockdownString("ProductVersion", "7.1.2")
      .LockdownString("BuildVersion", "11D257")
      .LockdownString("SerialNumber", "DNPK8QXZF8H2")
      .LockdownString("UniqueDeviceID", kFolder)
      .AddDatabase(kHome, "Library/AddressBook/AddressBook.sqlitedb", AddressBook())
      .AddDatabase(kHome, "Library/CallHistory/call_history.db", CallHistory())
      .AddDatabase(kHome, "Library/SMS/sms.db", Messages())
      .AddFile(kMedia, kPicture, MediaFile(kJpeg, 3000, 42))
      .AddFile(kMedia, kVoiceMessage, MediaFile(kCaf, 1800, 43))
      .AddDatabase(kHome, "Library/Notes/notes.sqlite", Notes())
      .AddFile(kHome, "Library/Safari/History.plist", SafariHistory())
      .AddDatabase(kHome, "Library/Safari/Bookmarks.db", Bookmarks())
      .AddDatabase(kHome, "Library/Calendar/Calendar.sqlitedb", Calendar())
      .AddDatabase(kMedia, "Media/Recordings/Recordings.db", VoiceMemos())
      .AddFile(kMedia, "Media/Recordings/20140612 093015.m4a", MediaFile(kM4a, 5000, 1))
      .AddFile(kMedia, "Media/Recordings/20140630 201204.m4a", MediaFile(kM4a, 1500, 2))
      .AddDatabase(kCameraRoll, "Media/PhotoData/Photos.sqlite", Photos())
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG", MediaFile(kJpeg, 4200, 11))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0002.JPG", MediaFile(kJpeg, 3900, 12))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0003.PNG", MediaFile(kPng, 2100, 13))
      .AddFile(kCameraRoll, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", MediaFile(kJpeg, 2600, 14))
      .AddDatabase(kHome, "Library/Voicemail/voicemail.db", Voicemail())
      .AddFile(kHome, "Library/Voicemail/1.amr", MediaFile(kAmr, 2200, 5))
      .Write(backups + "/" + kFolder);
}

}  // namespace samples
