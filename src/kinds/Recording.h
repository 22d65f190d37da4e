#ifndef YH_KINDS_RECORDING_H
#define YH_KINDS_RECORDING_H

#include "index/BackupType.h"
#include "kinds/RecordKind.h"
#include "kinds/VoiceMemos.h"

class MediaLocator;

// Voice memos whose audio file the backup holds with at least one byte.
class Recording : public RecordKind<VoiceMemos> {
 public:
  Recording() = default;

 private:
  void ReadBackup(BackupDevice* device) override;
  void FillDict(const VoiceMemos& memo, plist_t dict) const override;

  void AddRecordingList(const char* path);
  // Finds the memo's stored file; false when the memo is to be dropped.
  static bool Locate(const MediaLocator& locator, BackupType backupType, VoiceMemos& memo);
};

#endif
