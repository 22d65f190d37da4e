#include "kinds/VoiceMemos.h"

#include "common/PlistHelpers.h"

void InsertVoiceMemoKeys(const VoiceMemos& memo, plist_t dict) {
  InsertPlistDictString(dict, "date", memo.date.c_str());
  InsertPlistDictString(dict, "title", memo.title.c_str());
  InsertPlistDictString(dict, "duration", memo.duration.c_str());
  InsertPlistDictString(dict, "name", memo.name.c_str());
  InsertPlistDictString(dict, "path", memo.path.c_str());
  plist_dict_set_item(dict, "size", plist_new_uint(memo.size));
}
