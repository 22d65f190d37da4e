#ifndef YH_SERVICE_KINDANSWER_H
#define YH_SERVICE_KINDANSWER_H

#include <plist/plist.h>

#include "kinds/Kind.h"
#include "libYH.h"

// The answer of the kind that `kindOf` routes `type` to, asked with that
// route's flag through `ask` (FindContent or FindDeletedContent); NULL when
// no kind answers the type.
template <class KindOf>
plist_t KindAnswer(KindOf kindOf, BackupDevice* device, iDeviceContentType type, plist_t (Kind::*ask)(void*, int)) {
  int flag = 0;
  Kind* kind = kindOf(device, type, &flag);
  return kind ? (kind->*ask)(device, flag) : nullptr;
}

#endif
