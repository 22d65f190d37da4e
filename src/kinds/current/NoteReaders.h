#ifndef YH_KINDS_CURRENT_NOTEREADERS_H
#define YH_KINDS_CURRENT_NOTEREADERS_H

#include <vector>

#include "common/Database.h"
#include "kinds/current/Note.h"

namespace current {

// The notes of an old notes database (ZNOTE, iOS 8 and before), in table
// order, whatever columns it has. Their HTML body is kept as it is.
std::vector<NoteEntry> ReadLegacyNotes(Database& database);

// The notes of a note store (iOS 9 on), in table order, whatever generation
// of columns it has.
std::vector<NoteEntry> ReadNoteStore(Database& database);

}  // namespace current

#endif
