#include "kinds/current/Note.h"

#include <string_view>

#include "common/PlistHelpers.h"
#include "kinds/current/DeletedDatabases.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/NoteReaders.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char kLegacyNotes[] = "Library/Notes/notes.sqlite";
const char kNoteStoreName[] = "NoteStore.sqlite";
const LostRowsOf kLostLegacyNotes{{"ZNOTE"}, {}, false, "ZGUID"};
// A note refers to its folder, a row of its own table.
const LostRowsOf kLostStoredNotes{{"ZICCLOUDSYNCINGOBJECT"}, {}, true, "ZIDENTIFIER"};

// The note store lies at the top of the notes app group's folder on every
// generation seen; any folder of any domain is accepted.
bool IsNoteStore(std::string_view /*domain*/, std::string_view path) {
  const size_t nameLength = sizeof kNoteStoreName - 1;
  if (path.size() < nameLength || path.compare(path.size() - nameLength, nameLength, kNoteStoreName) != 0) {
    return false;
  }
  return path.size() == nameLength || path[path.size() - nameLength - 1] == '/';
}

}  // namespace

std::vector<NoteEntry> Note::Read(const BackupDevice* device) {
  std::vector<NoteEntry> notes = ReadOwnDatabases(device, StoredFilesAt(device, kLegacyNotes),
                                                     [](Database& database) { return ReadLegacyNotes(database); });
  AppendMoving(notes, NewestFirst(ReadOwnDatabases(device, FindStoredFiles(device, IsNoteStore),
                                                      [](Database& database) { return ReadNoteStore(database); }),
                                  &NoteEntry::modifiedAt));
  return notes;
}

// In the live answer's order: those the system keeps, then the lost rows
// (read with every note of their layer, the live and kept ones left out).
std::vector<Deleted<NoteEntry>> Note::ReadDeleted(const BackupDevice* device) {
  const std::vector<StoredFile> legacy = StoredFilesAt(device, kLegacyNotes);
  const std::vector<StoredFile> stores = FindStoredFiles(device, IsNoteStore);
  std::vector<Deleted<NoteEntry>> kept = ReadRecentlyDeleted(
      device, legacy, [](Database& database) { return ReadLegacyNotes(database, NoteSelection::RecentlyDeleted); });
  std::vector<Deleted<NoteEntry>> keptInStores = ReadRecentlyDeleted(
      device, stores, [](Database& database) { return ReadNoteStore(database, NoteSelection::RecentlyDeleted); });
  std::vector<Deleted<NoteEntry>> lost = ReadDeletedDatabases(
      device, legacy, kLostLegacyNotes, [](Database& database) { return ReadLegacyNotes(database, NoteSelection::Every); });
  std::vector<Deleted<NoteEntry>> lostInStores = ReadDeletedDatabases(
      device, stores, kLostStoredNotes, [](Database& database) { return ReadNoteStore(database, NoteSelection::Every); });
  std::vector<NoteEntry> shown = Records(device);
  for (const Deleted<NoteEntry>& note : kept) shown.push_back(note.record);
  for (const Deleted<NoteEntry>& note : keptInStores) shown.push_back(note.record);
  AppendMoving(kept, WithoutCopies(std::move(lost), shown));
  AppendMoving(keptInStores, WithoutCopies(std::move(lostInStores), shown));
  AppendMoving(kept, NewestFirst(std::move(keptInStores), &NoteEntry::modifiedAt));
  return kept;
}

void Note::InsertKeys(const NoteEntry& note, plist_t dict) const {
  InsertPlistDictString(dict, "create_date", note.created.c_str());
  InsertPlistDictString(dict, "modify_date", note.modified.c_str());
  InsertPlistDictString(dict, "title", note.title.c_str());
  InsertPlistDictString(dict, "body", note.body.c_str());
  plist_dict_set_item(dict, "locked", plist_new_bool(note.locked));
  InsertPlistDictString(dict, "folder", note.folder.c_str());
}

}  // namespace current
