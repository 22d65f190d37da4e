#include "kinds/current/Note.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "common/PlistHelpers.h"
#include "kinds/LocalDatabase.h"
#include "kinds/StoredFiles.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/NoteReaders.h"

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

template <class Reader>
void ReadEach(const BackupDevice* device, const std::vector<StoredFile>& files, Reader reader,
              std::vector<Note::Entry>& notes) {
  for (const StoredFile& file : files) {
    Database database = OpenStoredDatabase(device, file);
    for (Note::Entry& note : reader(database)) notes.push_back(std::move(note));
  }
}

}  // namespace

void Note::Read(const BackupDevice* device) {
  read_ = true;
  ReadEach(device, StoredFilesAt(device, kLegacyNotes), ReadLegacyNotes, notes_);
  const size_t firstOfStore = notes_.size();
  ReadEach(device, FindStoredFiles(device, IsNoteStore), ReadNoteStore, notes_);
  // Last modified first; notes without a date last.
  std::stable_sort(notes_.begin() + static_cast<std::ptrdiff_t>(firstOfStore), notes_.end(),
                   [](const Entry& a, const Entry& b) { return Newer(a.modifiedAt, b.modifiedAt); });
}

plist_t Note::FindContent(void* device, int /*flag*/) {
  if (!read_) Read(static_cast<const BackupDevice*>(device));
  plist_t array = plist_new_array();
  for (const Entry& note : notes_) {
    plist_t dict = plist_new_dict();
    InsertPlistDictString(dict, "create_date", note.created.c_str());
    InsertPlistDictString(dict, "modify_date", note.modified.c_str());
    InsertPlistDictString(dict, "title", note.title.c_str());
    InsertPlistDictString(dict, "body", note.body.c_str());
    plist_dict_set_item(dict, "locked", plist_new_bool(note.locked));
    InsertPlistDictString(dict, "folder", note.folder.c_str());
    plist_array_append_item(array, dict);
  }
  return array;
}

}  // namespace current
