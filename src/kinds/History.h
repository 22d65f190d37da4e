#ifndef YH_KINDS_HISTORY_H
#define YH_KINDS_HISTORY_H

#include <plist/plist.h>

#include <string>

#include "kinds/Kind.h"

// Safari history (property list and database) and bookmarks, as one array of
// dictionaries marked "history" or "bookmark".
//
// Unlike the other kinds this one keeps nothing: every request reads the
// files again and hands on each entry as it is read; the answer is never NULL.
class History : public Kind {
 public:
  History() = default;
  // Always an answer (an empty one when nothing is found).
  bool HandContent(void* device, int flag, RecordSink& sink) override;

 private:
  static void AddHistoryList(const std::string& path, RecordSink& sink);
  static void AddHistoryDb(const std::string& path, RecordSink& sink);
  static void AddBookmarkList(const std::string& path, RecordSink& sink);
};

#endif
