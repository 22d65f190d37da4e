#include <cstdint>

#include "SampleData.h"
#include "Samples.h"
#include "support/BackupBuilder.h"

namespace samples {
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::Schema;

const char kFolder[] = "00008110-000E0A1B2C3D4E5F";
const char kHome[] = "HomeDomain";
const char kMedia[] = "MediaDomain";
const char kCameraRoll[] = "CameraRollDomain";
const char kNotes[] = "AppDomainGroup-group.com.apple.notes";
const char kSafari[] = "AppDomain-com.apple.mobilesafari";
constexpr int kYear = 2024;

// Each payload sets window.pwned when a page runs it as markup or script.
const char kScript[] = "<script>window.pwned=1</script>";
const char kImage[] = "<img src=x onerror=\"window.pwned=2\">";
const char kEndScript[] = "</script><script>window.pwned=3</script>";
const char kQuotes[] = "\"><svg onload=\"window.pwned=4\">'";
const char kEntities[] = "&lt;b&gt;bold&lt;/b&gt; &amp; &#x3C;i&#x3E; &quot;";
const char kJavaScriptUrl[] = "javascript:window.pwned=5";
// Control characters, an escape sequence and the two JavaScript line breaks.
const char kControls[] = "bell\x07 escape\x1b[31m tab\t nul-free \x01\x7f line\xE2\x80\xA8para\xE2\x80\xA9" "end";
const char kPicture[] = "Media/DCIM/100APPLE/\"><img src=x onerror=window.pwned=6>.JPG";
const char kAttachment[] = "Library/SMS/Attachments/aa/01/A/photo.png\"><script>window.pwned=7</script>";
const char kMemo[] = "Media/Recordings/<b>memo</b> \"#1\"?.m4a";
// A deleted message and call, left in the databases' free space, whose
// recovered records the report marks.
const char kDeletedScript[] = "<img src=x onerror=\"window.pwned=11\">";
const char kUnsecured[] = "PRAGMA secure_delete=OFF;\n";

std::string Time(int month, int day, int hour, int minute) { return Since2001Text(kYear, month, day, hour, minute, 0); }

// A 24-bit bitmap with a gradient, so that the report shows a real thumbnail.
std::string Bitmap(int width, int height) {
  const int rowBytes = (width * 3 + 3) / 4 * 4;
  const uint32_t pixels = static_cast<uint32_t>(rowBytes * height);
  auto little = [](uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>((value >> (8 * i)) & 0xFF);
    return text;
  };
  std::string bmp = "BM" + little(54 + pixels, 4) + little(0, 4) + little(54, 4) + little(40, 4) + little(width, 4) +
                    little(height, 4) + little(1, 2) + little(24, 2) + little(0, 4) + little(pixels, 4) +
                    little(2835, 4) + little(2835, 4) + little(0, 4) + little(0, 4);
  for (int y = 0; y < height; ++y) {
    std::string row;
    for (int x = 0; x < width; ++x) {
      row += static_cast<char>(120 + 100 * x / width);  // blue
      row += static_cast<char>(60 + 120 * y / height);  // green
      row += static_cast<char>(230 - 80 * y / height);  // red
    }
    row.resize(static_cast<size_t>(rowBytes), '\0');
    bmp += row;
  }
  return bmp;
}

std::string AddressBook() {
  return Schema("AddressBook.sqlitedb-ios15") +
         Insert("ABPerson", "ROWID, First, Last, Organization, JobTitle, Nickname, Note, CreationDate",
                {{"1", Sql(kScript), Sql(kEntities), Sql(kQuotes), Sql(kControls), Sql(kImage), Sql(kEndScript),
                  Time(1, 2, 3, 4)}}) +
         Insert("ABMultiValueLabel", "ROWID, value", {{"1", Sql(kImage)}}) +
         Insert("ABMultiValue", "UID, record_id, property, identifier, label, value",
                {{"1", "1", "3", "0", "1", Sql("+1 555 0100")}, {"2", "1", "22", "0", "1", Sql(kJavaScriptUrl)}});
}

std::string CallHistory() {
  return kUnsecured + Schema("CallHistory.storedata-ios17") +
         Insert("ZCALLRECORD",
                "Z_PK, Z_ENT, Z_OPT, ZADDRESS, ZDATE, ZDURATION, ZORIGINATED, ZANSWERED, ZCALLTYPE, ZNAME, "
                "ZISO_COUNTRY_CODE, ZSERVICE_PROVIDER, ZLOCATION, ZUNIQUE_ID",
                {{"1", "2", "1", Sql(kJavaScriptUrl), Time(2, 1, 9, 0), "61", "1", "1", "1", Sql(kImage),
                  Sql(kQuotes), Sql(kEndScript), Sql(kControls), Sql("A1")},
                 {"2", "2", "1", Sql("+15550100"), Time(2, 2, 9, 0), "5", "0", "1", "1", Sql(kScript), Sql("us"),
                  Sql("com.apple.Telephony"), Sql(kEntities), Sql("A2")},
                 {"3", "2", "1", Sql(kDeletedScript), Time(2, 3, 9, 0), "7", "1", "1", "1", Sql(kDeletedScript),
                  Sql("us"), Sql(kDeletedScript), Sql(kDeletedScript), Sql("A3")}}) +
         "DELETE FROM ZCALLRECORD WHERE Z_PK = 3;\n";
}

std::string Messages() {
  return kUnsecured + Schema("sms.db-ios13") +
         Insert("handle", "ROWID, id, country, service",
                {{"1", Sql(kImage), Sql("us"), Sql(kScript)}, {"2", Sql(kJavaScriptUrl), Sql("us"), Sql("SMS")}}) +
         Insert("chat", "ROWID, guid, style, chat_identifier, service_name",
                {{"1", Sql("iMessage;-;1"), "45", Sql(kImage), Sql("iMessage")},
                 {"2", Sql("SMS;-;2"), "45", Sql(kJavaScriptUrl), Sql("SMS")}}) +
         Insert("message", "ROWID, guid, text, handle_id, country, service, date, is_from_me",
                {{"1", Sql("M1"), Sql(kScript), "1", Sql("us"), Sql(kImage), Time(3, 1, 8, 0), "0"},
                 {"2", Sql("M2"), Sql(kEndScript), "1", Sql("us"), Sql("iMessage"), Time(3, 1, 8, 1), "1"},
                 {"3", Sql("M3"), Sql(kQuotes), "1", Sql("us"), Sql("iMessage"), Time(3, 1, 8, 2), "0"},
                 {"4", Sql("M4"), Sql(kEntities), "1", Sql("us"), Sql("iMessage"), Time(3, 1, 8, 3), "1"},
                 {"5", Sql("M5"), Sql(kControls), "1", Sql("us"), Sql("iMessage"), Time(3, 1, 8, 4), "0"},
                 {"6", Sql("M6"), Sql(kJavaScriptUrl), "2", Sql("us"), Sql("SMS"), Time(3, 2, 8, 0), "0"},
                 {"7", Sql("M7"), Sql(kDeletedScript), "1", Sql("us"), Sql(kDeletedScript), Time(3, 1, 8, 5), "1"}}) +
         Insert("attachment", "ROWID, guid, filename, mime_type, transfer_name, total_bytes, original_guid",
                {{"1", Sql("A1"), Sql(std::string("~/") + kAttachment), Sql("image/png"), Sql(kImage), "10", Sql("A1")}}) +
         "DELETE FROM message WHERE ROWID = 7;\n";
}

std::string Notes() {
  return Schema("NoteStore.sqlite-ios17") +
         Insert("ZICCLOUDSYNCINGOBJECT", "Z_PK, ZCREATIONDATE, ZMODIFICATIONDATE1, ZTITLE1, ZNOTEDATA",
                {{"1", Time(4, 1, 10, 0), Time(4, 2, 10, 0), Sql(kEndScript), "1"}}) +
         Insert("ZICNOTEDATA", "Z_PK, ZNOTE, ZDATA",
                {{"1", "1", NoteStoreData(std::string(kScript) + "\n" + kImage + "\n" + kEntities)}});
}

std::string SafariHistory() {
  return Schema("History.db-safari") +
         Insert("history_items",
                "id, url, visit_count, daily_visit_counts, should_recompute_derived_visit_counts, visit_count_score",
                {{"1", Sql(kJavaScriptUrl), "1", "x'00'", "0", "1"},
                 {"2", Sql(" JaVaScRiPt:window.pwned=8"), "1", "x'00'", "0", "1"},
                 {"3", Sql("data:text/html,<script>window.pwned=9</script>"), "1", "x'00'", "0", "1"},
                 {"4", Sql("https://example.com/search?q=\"><script>window.pwned=10</script>&x=<b>"), "3",
                  "x'00'", "0", "1"}}) +
         Insert("history_visits", "id, history_item, visit_time, title",
                {{"1", "1", Time(5, 1, 9, 0), Sql(kImage)},
                 {"2", "2", Time(5, 1, 9, 1), Sql(kScript)},
                 {"3", "3", Time(5, 1, 9, 2), Sql(kQuotes)},
                 {"4", "4", Time(5, 1, 9, 3), Sql(kEntities)}});
}

std::string Calendar() {
  return Schema("Calendar.sqlitedb-ios18") +
         Insert("Calendar", "ROWID, title", {{"1", Sql("Home")}, {"2", Sql("Reminders")}}) +
         Insert("Location", "ROWID, title", {{"1", Sql(kQuotes)}}) +
         Insert("CalendarItem",
                "ROWID, summary, location_id, description, url, start_date, end_date, start_tz, all_day, status, "
                "calendar_id",
                {{"1", Sql("<style>body{display:none}</style>"), "1", Sql(kControls), Sql(kJavaScriptUrl),
                  Time(6, 1, 9, 0), Time(6, 1, 10, 0), Sql("UTC"), "0", "0", "1"},
                 {"2", Sql(kImage), "NULL", Sql(kScript), "NULL", Time(6, 2, 9, 0), Time(6, 2, 9, 0), Sql("UTC"), "0",
                  "0", "2"}});
}

std::string VoiceMemos() {
  return Schema("Recordings.db-ios7") +
         Insert("ZRECORDING", "Z_PK, ZDATE, ZDURATION, ZPATH, ZCUSTOMLABEL",
                {{"1", Time(7, 1, 9, 0), "12", Sql(std::string("/var/mobile/") + kMemo), Sql(kImage)}});
}

std::string Photos() {
  return Schema("Photos.sqlite-ios7") + Insert("ZGENERICASSET", "Z_PK, ZDIRECTORY, ZFILENAME",
                                               {{"1", Sql("DCIM/100APPLE"), Sql("Sunset.BMP")},
                                                {"2", Sql("DCIM/100APPLE"), Sql("\"><img src=x onerror=window.pwned=6>.JPG")},
                                                {"3", Sql("DCIM/100APPLE"), Sql("a#b?c=%2e%2e.BMP")}});
}

}  // namespace

void WriteHostileBackup(const std::string& backups) {
  const int64_t backedUp = UnixTime(kYear, 8, 1, 12, 0, 0);
  BackupBuilder(IndexKind::ManifestDb)
      .InfoString("Device Name", std::string(kImage) + " & " + kScript)
      .InfoString("Product Name", kQuotes)
      .InfoString("Product Type", "iPhone14,2")
      .InfoString("Product Version", kEndScript)
      .InfoString("Serial Number", kControls)
      .InfoString("Unique Identifier", kFolder)
      .InfoDate("Last Backup Date", backedUp)
      .ManifestBool("IsEncrypted", false)
      .ManifestDate("Date", backedUp)
      .AddDatabase(kHome, "Library/AddressBook/AddressBook.sqlitedb", AddressBook())
      .AddDatabase(kHome, "Library/CallHistoryDB/CallHistory.storedata", CallHistory())
      .AddDatabase(kHome, "Library/SMS/sms.db", Messages())
      .AddFile(kMedia, kAttachment, Bitmap(8, 8))
      .AddDatabase(kNotes, "NoteStore.sqlite", Notes())
      .AddDatabase(kSafari, "Library/Safari/History.db", SafariHistory())
      .AddDatabase(kHome, "Library/Calendar/Calendar.sqlitedb", Calendar())
      .AddDatabase(kMedia, "Media/Recordings/Recordings.db", VoiceMemos())
      .AddFile(kMedia, kMemo, MediaFile(kM4a, 300, 1))
      .AddDatabase(kCameraRoll, "Media/PhotoData/Photos.sqlite", Photos())
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/Sunset.BMP", Bitmap(96, 64))
      .AddFile(kCameraRoll, kPicture, MediaFile(kJpeg, 200, 2))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/a#b?c=%2e%2e.BMP", Bitmap(32, 32))
      .Write(backups + "/" + kFolder);
}

}  // namespace samples
