#ifndef YH_TESTS_FAULT_SAMPLEBACKUP_H
#define YH_TESTS_FAULT_SAMPLEBACKUP_H

#include <string>
#include <vector>

#include "libYH.h"
#include "kinds/WhatsAppSql.h"
#include "support/BackupBuilder.h"
#include "support/NoteStoreBody.h"

// A backup with a few records of every content kind, described table by
// table, so that a test (or the fuzzers' seed generator) can damage one
// database or file and know which answers may change because of it.
namespace yhtest::sample {

struct Table {
  std::string name;
  std::vector<std::string> columns;
  // Columns that join the tables; damaged copies of a row keep their values.
  std::vector<std::string> keys;
  std::vector<std::vector<std::string>> rows;  // SQL literals, one per column
};

struct Database {
  std::string domain;
  std::string path;
  std::vector<Table> tables;
  std::vector<iDeviceContentType> feeds;  // the answers that read it
};

struct File {
  std::string domain;
  std::string path;
  std::string contents;
  std::vector<iDeviceContentType> feeds;
};

inline std::vector<Database> Databases(IndexKind kind) {
  const bool old = kind == IndexKind::Mbdb;
  std::vector<Database> databases;
  databases.push_back(
      {"HomeDomain",
       "Library/AddressBook/AddressBook.sqlitedb",
       {{"ABPerson",
         {"First", "Middle", "Last", "Organization", "Department", "Note", "Birthday", "JobTitle", "Nickname",
          "CreationDate"},
         {},
         {{"'Alice'", "NULL", "'Smith'", "'Acme'", "'Sales'", "'met at the fair'", "'1980-05-01'", "'Buyer'",
           "'Ali'", "410227200"},
          {"'Dan'", "'J'", "'Brown'", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL"}}},
        {"ABMultiValue",
         {"UID", "record_id", "property", "label", "value"},
         {"UID", "record_id", "label"},
         {{"1", "1", "3", "1", "'+15552223333'"},
          {"2", "1", "4", "2", "'alice@example.com'"},
          {"3", "2", "3", "1", "'555-0100'"},
          {"4", "2", "5", "2", "NULL"}}},
        {"ABMultiValueLabel", {"value"}, {}, {{"'_$!<Mobile>!$_'"}, {"'home'"}}},
        {"ABMultiValueEntry", {"parent_id", "key", "value"}, {"parent_id", "key"}, {{"4", "1", "'1 Main St'"}}},
        {"ABMultiValueEntryKey", {"value"}, {}, {{"'Street'"}}}},
       {ContentContact, ContentCallHistory, ContentSms, ContentVoicemail, ContentWhatsApp, ContentWhatsAppCalls}});
  databases.push_back(
      {"WirelessDomain",
       "Library/CallHistoryDB/CallHistory.storedata",
       {{"ZCALLRECORD",
         {"ZNAME", "ZADDRESS", "ZDATE", "ZORIGINATED", "ZDURATION", "ZISO_COUNTRY_CODE", "ZSERVICE_PROVIDER",
          "ZLOCATION"},
         {},
         {{"'Carol'", "'+15554445555'", "410230800.5", "1", "42.9", "'us'", "'com.apple.Telephony'", "'Boston, MA'"},
          {"NULL", "'+15552223333'", "410234400", "0", "0", "'us'", "'com.apple.FaceTime'", "''"}}}},
       {ContentCallHistory}});
  if (old) {
    databases.push_back({"WirelessDomain",
                         "Library/CallHistory/call_history.db",
                         {{"call",
                           {"name", "address", "date", "flags", "duration", "country_code", "network_code"},
                           {},
                           {{"'Bob'", "'+15550001111'", "1388534400", "4", "125", "'us'", "'310'"},
                            {"''", "'+15552223333'", "1388538000", "5", "60", "'us'", "'260'"}}}},
                         {ContentCallHistory}});
  }
  databases.push_back(
      {"HomeDomain",
       "Library/SMS/sms.db",
       {{"chat", {"chat_identifier"}, {"chat_identifier"}, {{"'+15552223333'"}, {"'friend@example.com'"}}},
        {"handle", {"ROWID", "id"}, {"ROWID", "id"}, {{"1", "'+15552223333'"}, {"2", "'friend@example.com'"}}},
        {"message",
         {"text", "date", "is_from_me", "handle_id", "service", "country"},
         {"handle_id"},
         {{"'Hi there'", "410227300", "0", "1", "'SMS'", "'us'"},
          {"'On my way'", "410227400", "1", "1", "'SMS'", "'us'"},
          {"'See you'", "410227500", "0", "2", "'iMessage'", "NULL"}}},
        {"attachment",
         {"filename", "mime_type"},
         {},
         {{"'~/Library/SMS/Attachments/ab/00/IMG_1001.jpeg'", "'image/jpeg'"},
          {"'~/Library/SMS/Attachments/cd/01/plan.pdf'", "'application/pdf'"}}}},
       {ContentSms, ContentSmsAttachment}});
  if (old) {
    databases.push_back({"HomeDomain",
                         "Library/Notes/notes.sqlite",
                         {{"ZNOTE",
                           {"ZCREATIONDATE", "ZMODIFICATIONDATE", "ZTITLE", "ZBODY"},
                           {"ZBODY"},
                           {{"410227200", "410230800", "'Shopping'", "1"}, {"410234400", "410238000", "'Ideas'", "2"}}},
                          {"ZNOTEBODY",
                           {"Z_PK", "ZCONTENT"},
                           {"Z_PK"},
                           {{"1", "'<div>milk, eggs</div>'"}, {"2", "'<div>a <b>bold</b> plan</div>'"}}}},
                         {ContentNote}});
  } else {
    databases.push_back({"AppDomainGroup-group.com.apple.notes",
                         "NoteStore.sqlite",
                         {{"ZICCLOUDSYNCINGOBJECT",
                           {"ZCREATIONDATE", "ZMODIFICATIONDATE1", "ZTITLE1", "ZNOTEDATA"},
                           {"ZNOTEDATA"},
                           {{"410227200", "410230800", "'Shopping'", "1"}, {"410234400", "410238000", "'Ideas'", "2"}}},
                          {"ZICNOTEDATA",
                           {"Z_PK", "ZDATA"},
                           {"Z_PK"},
                           {{"1", SqlBlob(NoteStoreBody("milk, eggs"))},
                            {"2", SqlBlob(NoteStoreBody("a bold plan"))}}}},
                         {ContentNote}});
  }
  if (old) {
    databases.push_back({"HomeDomain",
                         "Library/Safari/Bookmarks.db",
                         {{"bookmarks",
                           {"title", "url", "last_modified"},
                           {},
                           {{"'Example'", "'http://example.com/'", "410227200"}, {"'Folder'", "NULL", "0"}}}},
                         {ContentSafariHistory}});
  } else {
    databases.push_back(
        {"HomeDomain",
         "Library/Safari/History.db",
         {{"history_items",
           {"id", "url", "visit_count"},
           {"id"},
           {{"1", "'https://www.example.org/'", "3"}, {"2", "'https://news.example.net/a'", "1"}}},
          {"history_visits",
           {"history_item", "title", "visit_time"},
           {"history_item"},
           {{"1", "'Example'", "410227200.25"}, {"2", "'News'", "410230800"}}}},
         {ContentSafariHistory}});
  }
  databases.push_back(
      {"HomeDomain",
       "Library/Calendar/Calendar.sqlitedb",
       {{"Calendar", {"ROWID", "title"}, {"ROWID"}, {{"1", "'Home'"}, {"2", "'Reminders'"}}},
        {"Location", {"ROWID", "title"}, {"ROWID"}, {{"1", "'Office'"}}},
        {"CalendarItem",
         {"summary", "location_id", "description", "url", "start_date", "end_date", "start_tz", "all_day",
          "status", "calendar_id"},
         {"location_id", "calendar_id"},
         {{"'Meeting'", "1", "'Weekly'", "'http://example.com/m'", "410230000", "410233600", "'America/New_York'",
           "0", "0", "1"},
          {"'Buy milk'", "0", "''", "NULL", "410238000", "410238000", "NULL", "1", "1", "2"}}}},
       {ContentCalendarEvent, ContentCalendarReminder}});
  databases.push_back({"MediaDomain",
                       "Media/Recordings/Recordings.db",
                       {{"ZRECORDING",
                         {"ZDATE", "ZDURATION", "ZPATH", "ZCUSTOMLABEL"},
                         {},
                         {{"410227200", "12.5", "'/var/mobile/Media/Recordings/20140101 000000.m4a'", "'Lecture'"}}}},
                       {ContentRecording}});
  databases.push_back({"CameraRollDomain",
                       "Media/PhotoData/Photos.sqlite",
                       {{"ZGENERICASSET",
                         {"ZDIRECTORY", "ZFILENAME"},
                         {},
                         {{"'DCIM/100APPLE'", "'IMG_0001.JPG'"}, {"'PhotoData/Sync/100SYNCF'", "'IMG_0002.PNG'"}}}},
                       {ContentCameraPhoto, ContentOtherPhoto}});
  databases.push_back({"HomeDomain",
                       "Library/Voicemail/voicemail.db",
                       {{"voicemail",
                         {"ROWID", "sender", "date", "duration", "flags", "trashed_date"},
                         {"ROWID"},
                         {{"1", "'+15552223333'", "1388534400", "42", "1", "0"},
                          {"2", "'+15557778888'", "1388538000", "7", "8", "0"}}}},
                       {ContentVoicemail}});
  databases.push_back(
      {kWhatsAppDomain,
       "ChatStorage.sqlite",
       {{"ZWACHATSESSION",
         {"Z_PK", "ZCONTACTJID", "ZPARTNERNAME"},
         {"Z_PK"},
         {{"1", "'15552223333@s.whatsapp.net'", "'Alice'"}, {"2", "'120363000000000001@g.us'", "'Team'"}}},
        {"ZWAGROUPMEMBER",
         {"Z_PK", "ZCHATSESSION", "ZMEMBERJID"},
         {"Z_PK", "ZCHATSESSION"},
         {{"1", "2", "'15552223333@s.whatsapp.net'"}}},
        {"ZWAMEDIAITEM",
         {"Z_PK", "ZMEDIALOCALPATH", "ZVCARDSTRING", "ZTITLE", "ZMETADATA"},
         {"Z_PK"},
         {{"1", "'Media/15552223333@s.whatsapp.net/0/1/pic.jpg'", "'image/jpeg'", "'Beach'", "NULL"},
          {"2", "NULL", "NULL", "NULL", SqlBlob(ProtoField(5, "M1"))}}},
        {"ZWAMESSAGE",
         {"Z_PK", "ZCHATSESSION", "ZISFROMME", "ZMESSAGEDATE", "ZMESSAGETYPE", "ZTEXT", "ZFROMJID", "ZSTANZAID",
          "ZGROUPMEMBER", "ZMEDIAITEM"},
         {"Z_PK", "ZCHATSESSION", "ZGROUPMEMBER", "ZMEDIAITEM"},
         {{"1", "1", "0", "410227300", "0", "'Hi on WhatsApp'", "'15552223333@s.whatsapp.net'", "'M1'", "NULL",
           "NULL"},
          {"2", "1", "1", "410227400", "1", "NULL", "NULL", "'M2'", "NULL", "1"},
          {"3", "2", "0", "410227500", "0", "'Replying'", "'120363000000000001@g.us'", "'M3'", "1", "2"}}}},
       {ContentWhatsApp}});
  databases.push_back({kWhatsAppDomain,
                       "CallHistory.sqlite",
                       {{"ZWAAGGREGATECALLEVENT", {"Z_PK", "ZINCOMING", "ZVIDEO", "ZMISSED"}, {"Z_PK"}, {{"1", "1", "0", "0"}}},
                        {"ZWACDCALLEVENT",
                         {"Z_PK", "Z1CALLEVENTS", "ZDATE", "ZDURATION", "ZOUTCOME", "ZGROUPJIDSTRING"},
                         {"Z1CALLEVENTS"},
                         {{"1", "1", "410227600", "42.5", "0", "NULL"}, {"2", "1", "410231200", "0", "1", "NULL"}}},
                        {"ZWACDCALLEVENTPARTICIPANT",
                         {"Z1PARTICIPANTS", "ZJIDSTRING"},
                         {"Z1PARTICIPANTS"},
                         {{"1", "'15552223333@s.whatsapp.net'"}}}},
                       {ContentWhatsAppCalls}});
  return databases;
}

// The History.plist of older Safari: "WebHistoryDates" holds one dictionary
// per page whose first entry is the address.
inline std::string SafariHistoryPlist() {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
         "<key>WebHistoryDates</key><array>"
         "<dict><key></key><string>http://old.example.com/</string><key>title</key><string>Old</string>"
         "<key>lastVisitedDate</key><string>410227200.0</string><key>visitCount</key><integer>4</integer></dict>"
         "<dict><key></key><string>http://old.example.com/b</string>"
         "<key>lastVisitedDate</key><string>410230800.5</string></dict>"
         "</array><key>WebHistoryFileVersion</key><integer>1</integer></dict></plist>\n";
}

inline std::vector<File> Files(IndexKind kind) {
  std::vector<File> files = {
      {"MediaDomain", "Library/SMS/Attachments/ab/00/IMG_1001.jpeg", "\xFF\xD8\xFF\xE0 attachment",
       {ContentSmsAttachment}},
      {"MediaDomain", "Library/SMS/Attachments/cd/01/plan.pdf", "%PDF-1.4 plan", {ContentSmsAttachment}},
      {"MediaDomain", "Media/Recordings/20140101 000000.m4a", "\x01\x02\x03\x20" "ftypM4A memo", {ContentRecording}},
      {"CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG", "\xFF\xD8\xFF\xE1 camera", {ContentCameraPhoto}},
      {"CameraRollDomain", "Media/PhotoData/Sync/100SYNCF/IMG_0002.PNG", "\x89PNG synced", {ContentOtherPhoto}},
      {"HomeDomain", "Library/Voicemail/1.amr", "#!AMR\n message", {ContentVoicemail}},
      {kWhatsAppDomain, "Message/Media/15552223333@s.whatsapp.net/0/1/pic.jpg", "\xFF\xD8 whatsapp", {ContentWhatsApp}},
  };
  if (kind == IndexKind::Mbdb) {
    files.push_back({"HomeDomain", "Library/Safari/History.plist", SafariHistoryPlist(), {ContentSafariHistory}});
  }
  return files;
}

inline std::string CreateSql(const Table& table) {
  std::string sql = "CREATE TABLE " + table.name + " (";
  for (size_t i = 0; i < table.columns.size(); ++i) sql += (i ? ", " : "") + table.columns[i];
  return sql + ");\n";
}

inline std::string InsertSql(const Table& table, const std::vector<std::string>& row) {
  std::string sql = "INSERT INTO " + table.name + " VALUES (";
  for (size_t i = 0; i < row.size(); ++i) sql += (i ? ", " : "") + row[i];
  return sql + ");\n";
}

// Typeless columns, so that a damaged copy can store anything in them.
inline std::string Sql(const Database& database) {
  std::string sql;
  for (const Table& table : database.tables) {
    sql += CreateSql(table);
    for (const auto& row : table.rows) sql += InsertSql(table, row);
  }
  return sql;
}

// The whole sample: device information, every database and file, a folder
// row and a file that was not copied.
inline BackupBuilder Builder(IndexKind kind) {
  BackupBuilder builder(kind);
  builder.InfoString("Device Name", "Sample iPhone")
      .InfoString("Product Name", "iPhone")
      .InfoString("Product Type", kind == IndexKind::Mbdb ? "iPhone5,2" : "iPhone13,2")
      .InfoString("Product Version", kind == IndexKind::Mbdb ? "7.1.2" : "17.4")
      .InfoString("Serial Number", "F2LXK0AAAAAA")
      .InfoString("Unique Identifier", "0123456789abcdef0123456789abcdef01234567")
      .InfoDate("Last Backup Date", 1388534400)
      .ManifestBool("IsEncrypted", false);
  for (const Database& database : Databases(kind)) builder.AddDatabase(database.domain, database.path, Sql(database));
  for (const File& file : Files(kind)) builder.AddFile(file.domain, file.path, file.contents);
  builder.AddDirectory("HomeDomain", "Library/Preferences");
  builder.AddMissingFile("HomeDomain", "Library/Preferences/com.apple.missing.plist");
  return builder;
}

}  // namespace yhtest::sample

#endif
