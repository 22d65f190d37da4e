#include "kinds/Photo.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "kinds/KindFixture.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/PlistDump.h"
#include "support/TreeSnapshot.h"

namespace {

using yhtest::AnalysedDevice;
using yhtest::BackupBuilder;
using yhtest::DumpAndFree;
using yhtest::IndexKind;

const char kCameraRoll[] = "CameraRollDomain";
const char kMedia[] = "MediaDomain";
const char kLibrary[] = "Media/PhotoData/Photos.sqlite";
const int kCamera = 1;
const int kOther = 0;

std::string Asset(const std::string& directory, const std::string& file) {
  return "INSERT INTO ZGENERICASSET (ZDIRECTORY, ZFILENAME) VALUES ('" + directory + "', '" + file + "');\n";
}

std::string Library(const std::string& rows) { return yhtest::Schema("Photos.sqlite-ios7") + rows; }

// Libraries older than ZGENERICASSET keep their pictures in a Photo table.
const char kOldPhotoTable[] = "CREATE TABLE Photo (directory VARCHAR, filename VARCHAR);\n";

std::string OldPhoto(const std::string& directory, const std::string& file) {
  return "INSERT INTO Photo (directory, filename) VALUES ('" + directory + "', '" + file + "');\n";
}

std::string Dict(const std::string& fileName, const std::string& path, uint64_t size, int type,
                 const std::string& queryPath) {
  return "{\"file_name\":\"" + fileName + "\",\"path\":\"" + path + "\",\"size\":" + std::to_string(size) +
         "u,\"type\":" + std::to_string(type) + "u,\"query_path\":\"" + queryPath + "\"}";
}

class PhotoTest : public ::testing::Test {
 protected:
  // Writes the backup and reads its index as the service would.
  void Open(const BackupBuilder& builder, IndexKind kind) {
    builder_ = std::make_unique<BackupBuilder>(builder);
    backup_ = builder.Write(dir_.Path() + "backup");
    device_ = std::make_unique<AnalysedDevice>(backup_, kind);
    ASSERT_TRUE(device_->IndexRead());
  }
  std::string Find(int flag) { return DumpAndFree(photo_.FindContent(device_->Get(), flag)); }
  std::string Stored(const std::string& domain, const std::string& path) const {
    return backup_ + builder_->StoredPath(domain, path);
  }

  yhtest::TempDir dir_;
  std::unique_ptr<BackupBuilder> builder_;
  std::string backup_;
  std::unique_ptr<AnalysedDevice> device_;
  Photo photo_;
};

TEST_F(PhotoTest, ManifestDbSplitsCameraPicturesFromOtherImages) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(
          kCameraRoll, kLibrary,
          Library(Asset("DCIM/100APPLE", "IMG_0001.JPG") + Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG")))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG", "abcde")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kCamera), "[" +
                               Dict("IMG_0001.JPG", Stored(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG"),
                                    5, 1, "Media/DCIM/100APPLE/IMG_0001.JPG") +
                               "]");
  EXPECT_EQ(Find(kOther),
            "[" +
                Dict("IMG_0100.JPG", Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG"), 3, 0,
                     "PhotoData/Sync/100SYNCD/IMG_0100.JPG") +
                "]");
}

TEST_F(PhotoTest, SecondFlagConvertsTheRecordsOfTheFirstCall) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(
          kCameraRoll, kLibrary,
          Library(Asset("DCIM/100APPLE", "IMG_0001.JPG") + Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG")))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG", "abcde")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz");
  Open(builder, IndexKind::ManifestDb);
  const std::string other = "[" +
                            Dict("IMG_0100.JPG", Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG"),
                                 3, 0, "PhotoData/Sync/100SYNCD/IMG_0100.JPG") +
                            "]";
  ASSERT_EQ(Find(kOther), other);

  // A library that now says something else is not read again.
  yhtest::WriteDatabase(Stored(kCameraRoll, kLibrary) + ".new",
                        Library(Asset("DCIM/100APPLE", "IMG_0009.JPG")));
  platform::RenameReplacing(Stored(kCameraRoll, kLibrary) + ".new", Stored(kCameraRoll, kLibrary));

  EXPECT_EQ(Find(kCamera), "[" +
                               Dict("IMG_0001.JPG", Stored(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG"),
                                    5, 1, "Media/DCIM/100APPLE/IMG_0001.JPG") +
                               "]");
  EXPECT_EQ(Find(kOther), other);
}

TEST_F(PhotoTest, LibraryWithBothTablesIsReadThroughZGenericAssetOnly) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(kCameraRoll, kLibrary,
                   Library(Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG") + kOldPhotoTable +
                           OldPhoto("PhotoData/Sync/100SYNCD", "IMG_0200.JPG")))
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0200.JPG", "uvw");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kOther),
            "[" +
                Dict("IMG_0100.JPG", Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG"), 3, 0,
                     "PhotoData/Sync/100SYNCD/IMG_0100.JPG") +
                "]");
}

TEST_F(PhotoTest, OlderLibraryIsReadThroughPhotoTable) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(kCameraRoll, kLibrary,
                   std::string(kOldPhotoTable) + OldPhoto("DCIM/100APPLE", "IMG_0001.JPG") +
                       OldPhoto("PhotoData/Sync/100SYNCD", "IMG_0200.JPG") +
                       "INSERT INTO Photo (directory, filename) VALUES (NULL, 'NODIR.JPG');\n")
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG", "ab")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0200.JPG", "uvw")
      .AddFile(kMedia, "Media/PhotoData/NODIR.JPG", "nodir");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kCamera), "[" +
                               Dict("IMG_0001.JPG", Stored(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG"),
                                    2, 1, "Media/DCIM/100APPLE/IMG_0001.JPG") +
                               "]");
  EXPECT_EQ(Find(kOther),
            "[" +
                Dict("IMG_0200.JPG", Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0200.JPG"), 3, 0,
                     "PhotoData/Sync/100SYNCD/IMG_0200.JPG") +
                "]");
}

TEST_F(PhotoTest, CameraPictureNeedsItsExactMediaPath) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(
          kCameraRoll, kLibrary,
          Library(Asset("DCIM/100APPLE", "IMG_0002.JPG") + Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG")))
      // The same picture elsewhere does not count for a camera picture.
      .AddFile(kMedia, "Media/Backup/DCIM/100APPLE/IMG_0002.JPG", "abcde")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kCamera), "[]");
  EXPECT_EQ(Find(kOther),
            "[" +
                Dict("IMG_0100.JPG", Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG"), 3, 0,
                     "PhotoData/Sync/100SYNCD/IMG_0100.JPG") +
                "]");
}

TEST_F(PhotoTest, ManifestDbCameraPictureIsKeptEmptyButOtherImageIsNot) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder
      .AddDatabase(
          kCameraRoll, kLibrary,
          Library(Asset("DCIM/100APPLE", "IMG_0001.JPG") + Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG") +
                  Asset("PhotoData/Sync/100SYNCD", "IMG_0101.JPG")))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG", "")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0101.JPG", "1");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kCamera), "[" +
                               Dict("IMG_0001.JPG", Stored(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG"),
                                    0, 1, "Media/DCIM/100APPLE/IMG_0001.JPG") +
                               "]");
  EXPECT_EQ(Find(kOther),
            "[" +
                Dict("IMG_0101.JPG", Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0101.JPG"), 1, 0,
                     "PhotoData/Sync/100SYNCD/IMG_0101.JPG") +
                "]");
}

TEST_F(PhotoTest, OtherImageRunsTogetherThePathsOfEmptyMatches) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kCameraRoll, kLibrary, Library(Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG")))
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "")
      .AddFile(kCameraRoll, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG.copy", "abcdef")
      .AddFile(kMedia, "Media/Later/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "ab");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kOther), "[" +
                              Dict("IMG_0100.JPG",
                                   Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG") +
                                       Stored(kCameraRoll, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG.copy"),
                                   6, 0, "PhotoData/Sync/100SYNCD/IMG_0100.JPG") +
                              "]");
}

TEST_F(PhotoTest, LowerCaseDcimIsNoCameraPicture) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kCameraRoll, kLibrary, Library(Asset("dcim/100APPLE", "IMG_0003.JPG")))
      .AddFile(kCameraRoll, "Media/dcim/100APPLE/IMG_0003.JPG", "abcd");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kCamera), "[]");
  EXPECT_EQ(Find(kOther), "[" +
                              Dict("IMG_0003.JPG", Stored(kCameraRoll, "Media/dcim/100APPLE/IMG_0003.JPG"), 4,
                                   0, "dcim/100APPLE/IMG_0003.JPG") +
                              "]");
}

TEST_F(PhotoTest, MbdbLocatesEveryPictureBySubstringAndNeedsBytes) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder
      .AddDatabase(kCameraRoll, kLibrary,
                   Library(Asset("DCIM/100APPLE", "IMG_0001.JPG") + Asset("DCIM/100APPLE", "IMG_0002.JPG") +
                           Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG")))
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG", "")
      .AddFile(kCameraRoll, "Media/Copy/DCIM/100APPLE/IMG_0001.JPG", "abc")
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0002.JPG", "")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz");
  Open(builder, IndexKind::Mbdb);

  EXPECT_EQ(Find(kCamera), "[" +
                               Dict("IMG_0001.JPG",
                                    Stored(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG") +
                                        Stored(kCameraRoll, "Media/Copy/DCIM/100APPLE/IMG_0001.JPG"),
                                    3, 1, "DCIM/100APPLE/IMG_0001.JPG") +
                               "]");
  EXPECT_EQ(Find(kOther),
            "[" +
                Dict("IMG_0100.JPG", Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG"), 3, 0,
                     "PhotoData/Sync/100SYNCD/IMG_0100.JPG") +
                "]");
}

TEST_F(PhotoTest, LibrariesAreReadInKeyListOrder) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kCameraRoll, kLibrary, Library(Asset("PhotoData/A", "A.JPG")))
      .AddDatabase(kMedia, kLibrary, Library(Asset("PhotoData/B", "B.JPG")))
      .AddFile(kMedia, "Media/PhotoData/B/B.JPG", "bb")
      .AddFile(kMedia, "Media/PhotoData/A/A.JPG", "a");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kOther),
            "[" + Dict("A.JPG", Stored(kMedia, "Media/PhotoData/A/A.JPG"), 1, 0, "PhotoData/A/A.JPG") + "," +
                Dict("B.JPG", Stored(kMedia, "Media/PhotoData/B/B.JPG"), 2, 0, "PhotoData/B/B.JPG") + "]");
}

TEST_F(PhotoTest, NothingFoundGivesNullAndTheNextCallSearchesAgain) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddFile(kCameraRoll, kLibrary, "not a database")
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz");
  Open(builder, IndexKind::ManifestDb);

  EXPECT_EQ(Find(kOther), "null");
  EXPECT_EQ(Find(kCamera), "null");

  yhtest::WriteDatabase(Stored(kCameraRoll, kLibrary) + ".new",
                        Library(Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG")));
  platform::RenameReplacing(Stored(kCameraRoll, kLibrary) + ".new", Stored(kCameraRoll, kLibrary));

  EXPECT_EQ(Find(kOther),
            "[" +
                Dict("IMG_0100.JPG", Stored(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG"), 3, 0,
                     "PhotoData/Sync/100SYNCD/IMG_0100.JPG") +
                "]");
}

TEST_F(PhotoTest, BackupWithoutLibraryGivesNull) {
  BackupBuilder builder(IndexKind::Mbdb);
  builder.AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz");
  Open(builder, IndexKind::Mbdb);

  EXPECT_EQ(Find(kOther), "null");
  EXPECT_EQ(Find(kCamera), "null");
}

TEST_F(PhotoTest, UnknownBackupTypeGivesNull) {
  BackupBuilder builder(IndexKind::ManifestDb);
  builder.AddDatabase(kCameraRoll, kLibrary, Library(Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG")))
      .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz");
  Open(builder, IndexKind::ManifestDb);
  device_->Get()->backupType = 2;

  EXPECT_EQ(Find(kOther), "null");
}

TEST_F(PhotoTest, LeavesTheBackupUntouched) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    BackupBuilder builder(kind);
    builder
        .AddDatabase(kCameraRoll, kLibrary,
                     Library(Asset("DCIM/100APPLE", "IMG_0001.JPG") +
                             Asset("PhotoData/Sync/100SYNCD", "IMG_0100.JPG")))
        .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG", "abcde")
        .AddFile(kMedia, "Media/PhotoData/Sync/100SYNCD/IMG_0100.JPG", "xyz");
    Open(builder, kind);
    const std::string before = yhtest::SnapshotTree(backup_);
    Photo photo;
    DumpAndFree(photo.FindContent(device_->Get(), kCamera));
    DumpAndFree(photo.FindContent(device_->Get(), kOther));
    EXPECT_EQ(yhtest::SnapshotTree(backup_), before);
    device_.reset();
    std::filesystem::remove_all(backup_);
  }
}

}  // namespace
