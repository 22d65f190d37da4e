#include "kinds/current/Note.h"

#include <string_view>

#include "common/PlistHelpers.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/NoteReaders.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char kLegacyNotes[] = "Library/Notes/notes.sqlite";
const char kNoteStoreName[] = "NoteStore.sqlite";

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
  std::vector<NoteEntry> notes = ReadStoredDatabases(device, StoredFilesAt(device, kLegacyNotes), ReadLegacyNotes);
  AppendMoving(notes, NewestFirst(ReadStoredDatabases(device, FindStoredFiles(device, IsNoteStore), ReadNoteStore),
                                  &NoteEntry::modifiedAt));
  return notes;
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
