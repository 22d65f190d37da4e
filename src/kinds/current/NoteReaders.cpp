#include "kinds/current/NoteReaders.h"

#include <initializer_list>

#include "common/ColumnHelpers.h"
#include "common/HtmlText.h"
#include "common/LocalDate.h"
#include "common/NoteDocument.h"
#include "common/SchemaInfo.h"

namespace current {
namespace {

const char kObjects[] = "ZICCLOUDSYNCINGOBJECT";
const char kNoteData[] = "ZICNOTEDATA";

// The first of these columns of the row that is not NULL: each generation
// keeps a note's date in another column and leaves the others NULL.
std::string FirstOf(const SchemaInfo& schema, const char* table, const char* alias,
                    std::initializer_list<const char*> columns) {
  std::string list;
  for (const char* column : columns) list += schema.ColumnOrNull(table, column, alias) + ", ";
  return "coalesce(" + list + "NULL)";
}

void SetDates(NoteEntry& note, const char* created, const char* modified) {
  note.created = LocalDateText(created, TimeBase::Since2001);
  LocalDate date = LocalDateOf(modified, TimeBase::Since2001);
  note.modified = std::move(date.text);
  note.modifiedAt = date.instant;
}

// The rows of the store that are notes: those with a body, and those whose
// entity is the note entity (a note whose body row is gone, or a store
// without body rows). Folders, accounts and attachments share the table.
std::string NoteRows(const SchemaInfo& schema) {
  std::string rows;
  if (schema.HasColumn(kObjects, "ZNOTEDATA")) rows = "n.ZNOTEDATA is not null";
  if (schema.HasColumn(kObjects, "Z_ENT") && schema.HasColumn("Z_PRIMARYKEY", "Z_NAME") &&
      schema.HasColumn("Z_PRIMARYKEY", "Z_ENT")) {
    rows += std::string(rows.empty() ? "" : " or ") +
            "n.Z_ENT in (select Z_ENT from Z_PRIMARYKEY where Z_NAME = 'ICNote')";
  }
  return rows;
}

// The body row of each note, when the store has body rows.
std::string BodyJoin(const SchemaInfo& schema) {
  if (!schema.HasColumn(kNoteData, "ZDATA") || !schema.HasColumn(kNoteData, "Z_PK") ||
      !schema.HasColumn(kObjects, "ZNOTEDATA")) {
    return std::string();
  }
  return " left join ZICNOTEDATA d on d.Z_PK = n.ZNOTEDATA";
}

// The part of the where clause that keeps the selected notes, given the
// condition that tells a deleted note; "" keeps every note, and no
// condition keeps no deleted note.
std::string Selected(NoteSelection selection, const std::string& deleted) {
  switch (selection) {
    case NoteSelection::Live: return deleted.empty() ? "" : " and not (" + deleted + ")";
    case NoteSelection::RecentlyDeleted: return deleted.empty() ? " and 0" : " and (" + deleted + ")";
    case NoteSelection::Every: break;
  }
  return "";
}

// A note deleted on the device: marked for deletion, or in the folder of
// type 1, Recently Deleted.
std::string DeletedInStore(const SchemaInfo& schema, bool folders) {
  std::string deleted;
  if (schema.HasColumn(kObjects, "ZMARKEDFORDELETION")) deleted = "coalesce(n.ZMARKEDFORDELETION, 0) = 1";
  if (folders && schema.HasColumn(kObjects, "ZFOLDERTYPE")) {
    deleted += std::string(deleted.empty() ? "" : " or ") + "coalesce(f.ZFOLDERTYPE, 0) = 1";
  }
  return deleted;
}

}  // namespace

// ZNOTE dates are seconds since 2001; ZDELETEDFLAG marks a note deleted on
// the device and not yet removed.
std::vector<NoteEntry> ReadLegacyNotes(Database& database, NoteSelection selection) {
  const SchemaInfo schema(database);
  std::vector<NoteEntry> notes;
  if (!schema.HasTable("ZNOTE")) return notes;
  const bool bodies = schema.HasColumn("ZNOTE", "ZBODY") && schema.HasColumn("ZNOTEBODY", "Z_PK");
  const bool stores = schema.HasColumn("ZNOTE", "ZSTORE") && schema.HasColumn("ZSTORE", "Z_PK");
  const std::string query =
      "select " + schema.SelectList("ZNOTE", {"ZCREATIONDATE", "ZMODIFICATIONDATE", "ZTITLE"}, "n") + ", " +
      (bodies ? schema.ColumnOrNull("ZNOTEBODY", "ZCONTENT", "b") : "NULL") + " AS body, " +
      (stores ? schema.ColumnOrNull("ZSTORE", "ZNAME", "s") : "NULL") + " AS folder from ZNOTE n" +
      (bodies ? " left join ZNOTEBODY b on b.Z_PK = n.ZBODY" : "") +
      (stores ? " left join ZSTORE s on s.Z_PK = n.ZSTORE" : "") +
      " where 1" +
      Selected(selection, schema.HasColumn("ZNOTE", "ZDELETEDFLAG") ? "coalesce(n.ZDELETEDFLAG, 0) != 0" : "") +
      " order by n.rowid";
  Database::Statement rows(database, query.c_str());
  const int created = rows.Column("ZCREATIONDATE");
  const int modified = rows.Column("ZMODIFICATIONDATE");
  const int title = rows.Column("ZTITLE");
  const int body = rows.Column("body");
  const int folder = rows.Column("folder");
  while (rows.Step()) {
    NoteEntry note;
    SetDates(note, rows.Text(created), rows.Text(modified));
    note.title = GetEmptyStringIsNull(rows.Text(title));
    // Notes of iOS 4 to 8 keep their text as HTML.
    note.body = HtmlToText(GetEmptyStringIsNull(rows.Text(body)));
    note.folder = GetEmptyStringIsNull(rows.Text(folder));
    notes.push_back(std::move(note));
  }
  return notes;
}

// Creation dates: ZCREATIONDATE on the first generations, then ZCREATIONDATE1,
// then ZCREATIONDATE3 (iOS 15 on); a note leaves the others NULL, so the
// newest column that has a value is the note's. The folder's title
// is its ZTITLE2. A locked note's body is encrypted: it is not read.
std::vector<NoteEntry> ReadNoteStore(Database& database, NoteSelection selection) {
  const SchemaInfo schema(database);
  std::vector<NoteEntry> notes;
  const std::string noteRows = NoteRows(schema);
  if (noteRows.empty()) return notes;
  const std::string bodyJoin = BodyJoin(schema);
  const bool folders = schema.HasColumn(kObjects, "ZFOLDER") && schema.HasColumn(kObjects, "Z_PK");
  const std::string query =
      "select " + FirstOf(schema, kObjects, "n", {"ZCREATIONDATE3", "ZCREATIONDATE1", "ZCREATIONDATE"}) +
      " AS created, " + FirstOf(schema, kObjects, "n", {"ZMODIFICATIONDATE1"}) + " AS modified, " +
      schema.SelectList(kObjects, {"ZTITLE1", "ZISPASSWORDPROTECTED"}, "n") + ", " +
      (bodyJoin.empty() ? "NULL" : "d.ZDATA") + " AS body, " +
      (folders ? schema.ColumnOrNull(kObjects, "ZTITLE2", "f") : "NULL") + " AS folder from ZICCLOUDSYNCINGOBJECT n" +
      bodyJoin + (folders ? " left join ZICCLOUDSYNCINGOBJECT f on f.Z_PK = n.ZFOLDER" : "") + " where (" +
      noteRows + ")" + Selected(selection, DeletedInStore(schema, folders)) + " order by n.rowid";
  Database::Statement rows(database, query.c_str());
  const int created = rows.Column("created");
  const int modified = rows.Column("modified");
  const int title = rows.Column("ZTITLE1");
  const int locked = rows.Column("ZISPASSWORDPROTECTED");
  const int body = rows.Column("body");
  const int folder = rows.Column("folder");
  while (rows.Step()) {
    NoteEntry note;
    SetDates(note, rows.Text(created), rows.Text(modified));
    note.title = GetEmptyStringIsNull(rows.Text(title));
    note.locked = rows.Int64(locked) == 1;
    if (!note.locked) note.body = NoteDocumentText(rows.Blob(body), static_cast<size_t>(rows.Bytes(body)));
    note.folder = GetEmptyStringIsNull(rows.Text(folder));
    notes.push_back(std::move(note));
  }
  return notes;
}

}  // namespace current
