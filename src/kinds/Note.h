#ifndef YH_KINDS_NOTE_H
#define YH_KINDS_NOTE_H

#include <plist/plist.h>

#include "kinds/Kind.h"

// Notes of both generations of the device's notes database. Unlike the other
// kinds it keeps no records and no cache: every answer comes straight from
// the rows, so each request reads the databases again and builds the
// dictionaries as it goes.
class Note : public Kind {
 public:
  Note() = default;
  // Old notes first, then note-store notes; the flag is not used.
  plist_t FindContent(void* device, int flag) override;

 private:
  static void AddNoteList(const char* path, void* array);
  static void AddNoteStoreList(const char* path, void* array);
};

#endif
