#ifndef YH_KINDS_CURRENT_NOTE_H
#define YH_KINDS_CURRENT_NOTE_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kinds/current/StoredRecordKind.h"
#include "libYH.h"

namespace current {

// One note as the current service keeps it.
struct NoteEntry {
  std::string created;
  std::string modified;
  std::optional<int64_t> modifiedAt;  // seconds since 1970, for the order
  std::string title;
  std::string body;
  bool locked = false;
  std::string folder;
};

// Notes of the old notes database (iOS 8 and before) and of every note-store
// generation (iOS 9 on), on both index kinds, with true dates and the whole
// text of each note. Old notes first, in their order; then note-store notes,
// last modified first. Notes deleted on the device are left out; locked ones
// are listed without their text. Besides the described keys: "locked" and
// "folder" (the title of the note's folder). An empty list when the backup
// holds no note, as the described service answers.
class Note : public StoredRecordKind<NoteEntry> {
 public:
  Note() : StoredRecordKind(WhenNone::EmptyList) {}

 private:
  std::vector<NoteEntry> Read(const BackupDevice* device) override;
  void InsertKeys(const NoteEntry& note, plist_t dict) const override;
};

}  // namespace current

#endif
