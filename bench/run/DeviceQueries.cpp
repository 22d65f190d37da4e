#include "DeviceQueries.h"

#include <plist/plist.h>
#include <sqlite3.h>

#include <fstream>
#include <iterator>

namespace bench {
namespace {

// The texts the library runs, so that the floor pays for the same work in SQLite.
const char kPersons[] =
    "select rowid as record_id, (ifnull(First,'')||' '|| ifnull(Middle,'')|| ' ' || ifnull(Last,'')) as "
    "name,Organization,Department,Note,Birthday,JobTitle,Nickname,CreationDate from ABPerson";
const char kProperties[] =
    "select  m.record_id, l.value as type,m.value from ABMultiValue m left join ABMultiValueLabel l on "
    "l.rowid=m.label;";
const char kPropertyEntries[] =
    "select m.record_id,l.value,k.value || ':' || a.value from ABMultiValue m ,ABMultiValueLabel l, "
    "ABMultiValueEntry a , ABMultiValueEntryKey k on l.rowid=m.label and a.parent_id = m.uid and k.rowid "
    "= a.key;";
const char kMessages[] =
    "select distinct c.chat_identifier,m.country,m.service,m.text,m.date,m.is_from_me from chat c, message m "
    ",handle h where c.chat_identifier = h.id and m.handle_id = h.rowid order by m.date";
const char kMadridMessages[] =
    "select mc.rowid,m.country,m.madrid_service,m.madrid_handle,m.text,m.date,m.madrid_flags from message "
    "m,madrid_chat mc where m.madrid_handle=mc.chat_identifier order by m.date";
const char kAttachments[] = "select filename,mime_type from attachment";
const char kMadridAttachments[] = "select filename,mime_type from madrid_attachment";
const char kCalls[] = "select name,address,date,flags,duration,country_code,network_code from call";
const char kCallStoreiOS9[] =
    "select zname,zaddress,zdate,zoriginated,zduration,ziso_country_code,null,null from zcallrecord  order by "
    "zdate desc";
const char kCallStoreiOS10[] =
    "select zname,zaddress,zdate,zoriginated,zduration,ziso_country_code,zservice_provider,zlocation from "
    "zcallrecord  order by zdate desc";
const char kNotes[] =
    "select t.ZCREATIONDATE,t.ZMODIFICATIONDATE,t.ztitle,b.ZCONTENT from ZNOTE t inner join "
    "ZNOTEBODY b on t.zbody = b.Z_PK";
const char kNoteStore[] =
    "SELECT a.ZCREATIONDATE, a.ZMODIFICATIONDATE1, a.ZTITLE1, b.ZDATA FROM ZICCLOUDSYNCINGOBJECT AS a "
    "LEFT JOIN ZICNOTEDATA AS b ON a.ZNOTEDATA=b.Z_PK ORDER BY a.ZMODIFICATIONDATE1 desc";
const char kHistory[] =
    "select hv.title,hi.url,hv.visit_time,hi.visit_count from history_visits hv,history_items hi "
    "where hv.history_item = hi.id";
const char kBookmarks[] = "select title,url,last_modified from bookmarks";
const char kCalendarItems[] =
    "select c.title,ci.summary as title,l.title as location,ci.description,ci.url,ci.start_date,"
    "ci.end_date,ci.start_tz,ci.all_day,ci.status from CalendarItem ci left join Location l  on "
    "ci.location_id = l.ROWID left join Calendar c on c.ROWID = ci.calendar_id";
const char kEvents[] =
    "select c.title as type, e.summary as title,e.location,e.description,e.url,e.start_date,"
    "e.end_date,e.start_tz,e.all_day,e.status from Calendar c, Event e where c.rowid = e.calendar_id";
const char kRecordings[] = "select ZDATE,ZDURATION,ZPATH,ZCUSTOMLABEL from ZRECORDING";
const char kAssets[] =
    "select ZDIRECTORY || '/' || ZFILENAME,ZFILENAME from ZGENERICASSET where ZFILENAME is not null "
    "and ZDIRECTORY is not null";
const char kOldPhotos[] =
    "select directory || '/' || filename,filename from Photo where filename is not null and directory "
    "is not null";

void ParsePropertyList(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  plist_t root = nullptr;
  plist_from_bin(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
  plist_free(root);
}

}  // namespace

sqlite3* OpenDeviceDatabase(const std::string& file) {
  sqlite3* db = nullptr;
  const std::string uri = "file:" + file + "?immutable=1";
  if (sqlite3_open_v2(uri.c_str(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr) != SQLITE_OK) {
    sqlite3_close(db);
    return nullptr;
  }
  // As the library does: sorting and DISTINCT in memory, not in temporary files.
  sqlite3_exec(db, "PRAGMA temp_store=MEMORY", nullptr, nullptr, nullptr);
  return db;
}

// True when the query ran to its end.
bool RunToEnd(sqlite3* db, const char* sql) {
  if (!db) return false;
  sqlite3_stmt* rows = nullptr;
  if (sqlite3_prepare_v2(db, sql, -1, &rows, nullptr) != SQLITE_OK) {
    sqlite3_finalize(rows);
    return false;
  }
  int status;
  while ((status = sqlite3_step(rows)) == SQLITE_ROW) {
    for (int column = 0; column < sqlite3_column_count(rows); ++column) {
      if (sqlite3_column_type(rows, column) == SQLITE_BLOB) {
        sqlite3_column_blob(rows, column);
      } else {
        sqlite3_column_text(rows, column);
      }
    }
  }
  sqlite3_finalize(rows);
  return status == SQLITE_DONE;
}

const std::vector<DeviceSource>& DeviceSources() {
  static const std::vector<DeviceSource> sources = {
      {"contacts",
       "Library/AddressBook/AddressBook.sqlitedb",
       true,
       true,
       false,
       false,
       {{kPersons, nullptr}, {kProperties, nullptr}, {kPropertyEntries, nullptr}}},
      {"messages", "Library/SMS/sms.db", true, true, false, true, {{kMessages, kMadridMessages}}},
      {"attachments", "Library/SMS/sms.db", true, true, false, false, {{kAttachments, kMadridAttachments}}},
      {"call history", "Library/CallHistory/call_history.db", true, false, false, false, {{kCalls, nullptr}}},
      {"call history",
       "Library/CallHistoryDB/CallHistory.storedata",
       true,
       false,
       false,
       false,
       {{kCallStoreiOS9, nullptr}}},
      {"call history",
       "Library/CallHistoryDB/CallHistory.storedata",
       false,
       true,
       false,
       false,
       {{kCallStoreiOS10, nullptr}}},
      {"notes", "Library/Notes/notes.sqlite", true, true, false, true, {{kNotes, nullptr}}},
      {"notes", "NoteStore.sqlite", true, true, false, true, {{kNoteStore, nullptr}}},
      {"Safari", "Library/Safari/History.plist", true, true, true, true, {}},
      {"Safari", "Library/Safari/History.db", false, true, false, true, {{kHistory, nullptr}}},
      {"Safari", "Library/Safari/Bookmarks.db", true, false, false, true, {{kBookmarks, nullptr}}},
      {"calendar", "Library/Calendar/Calendar.sqlitedb", true, true, false, false, {{kCalendarItems, kEvents}}},
      {"recordings", "Media/Recordings/Recordings.db", true, true, false, false, {{kRecordings, nullptr}}},
      {"photos", "Media/PhotoData/Photos.sqlite", true, true, false, false, {{kAssets, kOldPhotos}}},
  };
  return sources;
}

void RunQueries(const DeviceSource& source, const std::string& storedFile) {
  if (source.propertyList) {
    ParsePropertyList(storedFile);
    return;
  }
  sqlite3* db = OpenDeviceDatabase(storedFile);
  for (const Query& query : source.queries) {
    if (!RunToEnd(db, query.sql) && query.older) RunToEnd(db, query.older);
  }
  sqlite3_close(db);
}

}  // namespace bench
