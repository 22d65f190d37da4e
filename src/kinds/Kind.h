#ifndef YH_KINDS_KIND_H
#define YH_KINDS_KIND_H

#include <plist/plist.h>

#include "common/VqBase.h"

// One content kind of a backup. The service creates one object of each kind
// per analysed backup and asks it for content; the answer is a new tree the
// caller owns, or NULL when there is nothing to give.
class Kind : public VqBase {
 public:
  ~Kind() override = default;
  virtual plist_t FindContent(void* device, int flag) = 0;
  // The records of the same layout that the owner deleted, NULL when there
  // are none; only kinds of the current service find any.
  virtual plist_t FindDeletedContent(void* /*device*/, int /*flag*/) { return nullptr; }
};

#endif
