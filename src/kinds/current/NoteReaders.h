#ifndef YH_KINDS_CURRENT_NOTEREADERS_H
#define YH_KINDS_CURRENT_NOTEREADERS_H

#include <vector>

#include "common/Database.h"
#include "kinds/current/Note.h"

namespace current {

// Which notes a reading gives.
enum class NoteSelection {
  Live,             // those the device lists among its notes
  RecentlyDeleted,  // those it keeps after a deletion: flagged deleted, marked
                    // for deletion, or in the Recently Deleted folder
  Every,            // both
};

// The notes of an old notes database (ZNOTE, iOS 8 and before), in table
// order, whatever columns it has. Their HTML body is kept as it is.
std::vector<NoteEntry> ReadLegacyNotes(Database& database, NoteSelection selection = NoteSelection::Live);

// The notes of a note store (iOS 9 on), in table order, whatever generation
// of columns it has.
std::vector<NoteEntry> ReadNoteStore(Database& database, NoteSelection selection = NoteSelection::Live);

}  // namespace current

#endif
