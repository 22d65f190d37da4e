#ifndef YH_KINDS_VOICEMEMOS_H
#define YH_KINDS_VOICEMEMOS_H

#include <plist/plist.h>

#include <cstdint>
#include <string>

#include "common/VqBase.h"

// One voice memo, and where the backup keeps its audio file.
class VoiceMemos : public VqBase {
 public:
  std::string date;
  std::string duration;
  std::string title;
  std::string name;        // file name: the device path after its last "/"
  std::string path;        // stored file in the backup; empty until located
  std::string devicePath;  // the file's path on the device
  uint64_t size = 0;
};

// Inserts the keys both services give a memo, "date" to "size".
void InsertVoiceMemoKeys(const VoiceMemos& memo, plist_t dict);

#endif
