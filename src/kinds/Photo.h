#ifndef YH_KINDS_PHOTO_H
#define YH_KINDS_PHOTO_H

#include "index/BackupType.h"
#include "kinds/GenericAsset.h"
#include "kinds/RecordKind.h"

class Database;
class MediaLocator;

// The photo library's image files, split by flag: 1 camera pictures, 0 all
// other images. One reading of the library serves both.
class Photo : public RecordKind<GenericAsset> {
 public:
  Photo() = default;

 private:
  void ReadBackup(BackupDevice* device) override;
  bool Selects(const GenericAsset& asset, int type) const override;
  void FillDict(const GenericAsset& asset, plist_t dict) const override;

  void AddPhotoList(const char* path);
  // Each returns 0 when its query ran, -1 when it failed.
  int QueryPhoto(Database& db);
  int QueryZGenericAsset(Database& db);
  // Finds the asset's stored file; false when the asset is to be dropped.
  static bool Locate(const MediaLocator& locator, BackupType backupType, GenericAsset& asset);
};

#endif
