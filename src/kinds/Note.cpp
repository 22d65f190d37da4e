#include "kinds/Note.h"

#include <cstring>
#include <string>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/GZip.h"
#include "common/PlistHelpers.h"
#include "kinds/ColumnDate.h"
#include "kinds/SourceFiles.h"
#include "libYH.h"

namespace {

const SourcePaths kNoteSource{"Library/Notes/notes.sqlite", "Library/Notes/notes.sqlite"};
// On a Manifest.mbdb backup the note store is looked for from the device
// record's folder, the old notes database from the reader's.
const SourcePaths kNoteStoreSource{"NoteStore.sqlite", "NoteStore.sqlite"};

const char kNoteQuery[] =
    "select t.ZCREATIONDATE,t.ZMODIFICATIONDATE,t.ztitle,b.ZCONTENT from ZNOTE t inner join "
    "ZNOTEBODY b on t.zbody = b.Z_PK";
const char kNoteStoreQuery[] =
    "SELECT a.ZCREATIONDATE, a.ZMODIFICATIONDATE1, a.ZTITLE1, b.ZDATA FROM ZICCLOUDSYNCINGOBJECT AS a "
    "LEFT JOIN ZICNOTEDATA AS b ON a.ZNOTEDATA=b.Z_PK ORDER BY a.ZMODIFICATIONDATE1 desc";

const unsigned int kBodyBufferSize = 2048;
// Inflated note-store data begins with a fixed header before the text.
const unsigned int kBodyHeaderSize = 14;
// Marks the end of the text inside the inflated data.
const unsigned char kBodyEndMark = 0x1A;

// A date column (seconds since 2001) as local date text; empty when NULL.
void InsertNoteDate(plist_t dict, const char* key, const char* seconds) {
  InsertPlistDictString(dict, key, seconds ? DateText2001(seconds).c_str() : "");
}

// False once the sink wants no more.
bool AppendNoteDict(RecordSink& sink, const char* created, const char* modified, const char* title,
                    const char* body) {
  plist_t dict = plist_new_dict();
  InsertNoteDate(dict, "create_date", created);
  InsertNoteDate(dict, "modify_date", modified);
  InsertPlistDictString(dict, "title", title);
  InsertPlistDictString(dict, "body", body);
  return sink.Put(dict);
}

int NoteDbCallback(void* sink, int /*columns*/, char** values, char** /*names*/) {
  // The old body is HTML and is handed on unchanged.
  return AppendNoteDict(*static_cast<RecordSink*>(sink), values[0], values[1],
                        GetEmptyStringIsNull(values[2]).c_str(), GetEmptyStringIsNull(values[3]).c_str())
             ? 0
             : 1;
}

// The text of inflated note-store data: after the header, up to the end
// mark, the first zero byte or the inflated length, whichever comes first.
// Design decision: the inflated length bounds the text too, so that bytes
// beyond what this row inflated never reach it.
std::string NoteStoreBody(const unsigned char* data, unsigned int length) {
  if (length <= kBodyHeaderSize) return std::string();
  const char* text = reinterpret_cast<const char*>(data) + kBodyHeaderSize;
  const size_t available = length - kBodyHeaderSize;
  const void* mark = std::memchr(text, kBodyEndMark, available);
  const size_t bounded = mark ? static_cast<size_t>(static_cast<const char*>(mark) - text) : available;
  return std::string(text, strnlen(text, bounded));
}

}  // namespace

bool Note::HandContent(void* device, int /*flag*/, RecordSink& sink) {
  auto* backup = static_cast<BackupDevice*>(device);
  for (const std::string& path : SourceFiles(backup, kNoteSource)) AddNoteList(path.c_str(), sink);
  for (const std::string& path : SourceFiles(backup, kNoteStoreSource)) AddNoteStoreList(path.c_str(), sink);
  return true;
}

void Note::AddNoteList(const char* path, RecordSink& sink) {
  if (sink.Stopped()) return;
  Database db(path);
  if (!db.IsOpen()) return;
  db.Exec(kNoteQuery, NoteDbCallback, &sink);
}

void Note::AddNoteStoreList(const char* path, RecordSink& sink) {
  if (sink.Stopped()) return;
  Database db(path);
  if (!db.IsOpen()) return;
  Database::Statement rows(db, kNoteStoreQuery);
  if (!rows.IsValid()) return;
  unsigned char buffer[kBodyBufferSize];
  while (!sink.Stopped() && rows.Step()) {
    // Design decision: the buffer starts clean for every row, so that no
    // bytes of an earlier note show through a shorter or failed inflation.
    std::memset(buffer, 0, sizeof buffer);
    unsigned int length = kBodyBufferSize;
    const void* data = rows.Blob(3);
    const int dataLength = rows.Bytes(3);
    // Only the length counts: a failed inflation keeps the full buffer length.
    GZDecompress(static_cast<unsigned char*>(const_cast<void*>(data)), static_cast<unsigned int>(dataLength),
                 buffer, &length);
    if (length == 0) continue;
    const std::string body = NoteStoreBody(buffer, length);
    AppendNoteDict(sink, rows.Text(0), rows.Text(1), rows.Text(2), body.c_str());
  }
}
