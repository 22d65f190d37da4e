#ifndef YH_KINDS_SMSATTACHMENT_H
#define YH_KINDS_SMSATTACHMENT_H

#include <string>

#include "kinds/AttachmentAsset.h"
#include "kinds/RecordKind.h"

class Database;

// Message attachments of every kind in one list, images and other files told
// apart by "type", each with its stored file and a picture-style name.
class SmsAttachment : public RecordKind<AttachmentAsset> {
 public:
  SmsAttachment() = default;

 protected:
  void ReadBackup(BackupDevice* device) override;
  // Only located attachments are shown; the others still hold their number.
  bool Selects(const AttachmentAsset& asset, int flag) const override;
  void FillDict(const AttachmentAsset& asset, plist_t dict) const override;

 private:
  void AddAttachmentList(const std::string& path);
  void LocateFiles(const BackupDevice* device);
  // Each runs one query on an open database: 0 on success, -1 on failure.
  int QueryAttachment(Database& db);
  int QueryMadridAttachment(Database& db);
};

#endif
