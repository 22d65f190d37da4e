#ifndef YH_KINDS_NOTE_H
#define YH_KINDS_NOTE_H

#include <plist/plist.h>

#include "kinds/Kind.h"

// Notes of both generations of the device's notes database. Unlike the other
// kinds it keeps no records and no cache: every answer comes straight from
// the rows, so each request reads the databases again and hands on each
// dictionary as it is built.
class Note : public Kind {
 public:
  Note() = default;
  // Old notes first, then note-store notes; the flag is not used. Always an
  // answer (an empty one when nothing is found).
  bool HandContent(void* device, int flag, RecordSink& sink) override;

 private:
  static void AddNoteList(const char* path, RecordSink& sink);
  static void AddNoteStoreList(const char* path, RecordSink& sink);
};

#endif
