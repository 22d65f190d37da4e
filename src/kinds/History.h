#ifndef YH_KINDS_HISTORY_H
#define YH_KINDS_HISTORY_H

#include <plist/plist.h>

#include <string>

#include "kinds/Kind.h"

// Safari history (property list and database) and bookmarks, as one array of
// dictionaries marked "history" or "bookmark".
//
// Unlike the other kinds this one keeps nothing: every request reads the
// files again and builds a new array, which is never NULL.
class History : public Kind {
 public:
  History() = default;
  plist_t FindContent(void* device, int flag) override;

 private:
  void AddHistoryList(const std::string& path, plist_t array);
  void AddHistoryDb(const std::string& path, plist_t array);
  void AddBookmarkList(const std::string& path, plist_t array);
};

#endif
