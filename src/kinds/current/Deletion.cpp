#include "kinds/current/Deletion.h"

#include "common/PlistHelpers.h"

namespace current {

void InsertDeletion(const Deletion& deletion, plist_t dict) {
  InsertPlistDictString(dict, "deleted_from", deletion.from);
  InsertPlistDictString(dict, "deleted_date", deletion.date.c_str());
  if (deletion.earlierVersion) plist_dict_set_item(dict, "earlier_version", plist_new_bool(1));
}

}  // namespace current
