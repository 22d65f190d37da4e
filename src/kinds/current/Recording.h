#ifndef YH_KINDS_CURRENT_RECORDING_H
#define YH_KINDS_CURRENT_RECORDING_H

#include <vector>

#include "kinds/VoiceMemos.h"
#include "kinds/current/StoredRecordKind.h"
#include "libYH.h"

namespace current {

// One voice memo and its stored file; devicePath is ZPATH as the database
// wrote it.
struct Memo : VoiceMemos {
  bool present = false;
  bool deleted = false;
};

// Voice memos of every generation: Recordings.db (up to iOS 11),
// CloudRecordings.db beside it (iOS 12 and 13) and in the voice memos app
// group (iOS 14 on). Each memo's audio file is looked up exactly beside its
// database. A memo whose file the backup lacks is listed too, with an empty
// path and size 0: its title and date are still worth recovering. Besides
// the described keys: "present" and "deleted" (in Recently Deleted). NULL
// when no memo database lists a memo.
class Recording : public StoredRecordKind<Memo> {
 public:
  Recording() : StoredRecordKind(WhenNone::Null) {}

 private:
  std::vector<Memo> Read(const BackupDevice* device) override;
  void InsertKeys(const Memo& memo, plist_t dict) const override;
};

}  // namespace current

#endif
