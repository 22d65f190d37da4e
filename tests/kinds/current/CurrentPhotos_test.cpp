#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

const IndexKind kIndexKinds[] = {IndexKind::ManifestDb, IndexKind::Mbdb};
const char kCameraRoll[] = "CameraRollDomain";
const char kLibrary[] = "Media/PhotoData/Photos.sqlite";

// A photo library generation: its real schema and what that schema records.
struct Generation {
  std::string schema;
  std::string table;
  bool trashed;        // has ZTRASHEDSTATE
  bool originalNames;  // has ZADDITIONALASSETATTRIBUTES
};

// The attributes table as real libraries define it; newer schemas here hold
// their asset table only, so theirs is taken from the iOS 7 library.
std::string AttributesTable() {
  const std::string ios7 = Schema("Photos.sqlite-ios7");
  const size_t start = ios7.find("CREATE TABLE ZADDITIONALASSETATTRIBUTES");
  return ios7.substr(start, ios7.find('\n', start) + 1 - start);
}

const Generation kIos7{"Photos.sqlite-ios7", "ZGENERICASSET", false, true};
const Generation kIos11{"Photos.sqlite-ios11", "ZGENERICASSET", true, false};
const Generation kIos18{"Photos.sqlite-ios18", "ZASSET", true, true};

struct Asset {
  int key;
  std::string directory, file, created;  // created: SQL literal
  int kind;
  int trashed;
  std::string originalName;  // "" for no attributes row
};

// The rows of `assets` (and of their original names) in a library of this generation.
std::string Rows(const Generation& generation, const std::vector<Asset>& assets) {
  std::string sql;
  for (const Asset& asset : assets) {
    sql += "INSERT INTO " + generation.table + " (Z_PK, ZDIRECTORY, ZFILENAME, ZDATECREATED, ZKIND" +
           (generation.trashed ? ", ZTRASHEDSTATE" : "") + ") VALUES (" + std::to_string(asset.key) + ", '" +
           asset.directory + "', '" + asset.file + "', " + asset.created + ", " + std::to_string(asset.kind) +
           (generation.trashed ? ", " + std::to_string(asset.trashed) : "") + ");\n";
    if (generation.originalNames && !asset.originalName.empty()) {
      sql += "INSERT INTO ZADDITIONALASSETATTRIBUTES (Z_PK, ZASSET, ZORIGINALFILENAME) VALUES (" +
             std::to_string(100 + asset.key) + ", " + std::to_string(asset.key) + ", '" + asset.originalName + "');\n";
    }
  }
  return sql;
}

std::string Library(const Generation& generation, const std::vector<Asset>& assets) {
  std::string sql = Schema(generation.schema);
  if (generation.originalNames && generation.table == "ZASSET") sql += AttributesTable();
  return sql + Rows(generation, assets);
}

struct Expected {
  std::string fileName, path;
  size_t size;
  bool camera;
  std::string queryPath, date, originalName;
  bool video, trashed;
  bool present = true;
};

std::string Answer(const std::vector<Expected>& records) {
  std::string text = "[";
  for (const Expected& record : records) {
    if (text.size() > 1) text += ",";
    text += "{\"file_name\":\"" + record.fileName + "\",\"path\":\"" + record.path +
            "\",\"size\":" + std::to_string(record.size) + "u,\"type\":" + (record.camera ? "1" : "0") +
            "u,\"query_path\":\"" + record.queryPath + "\",\"date\":\"" + record.date + "\",\"original_name\":\"" +
            record.originalName + "\",\"video\":" + (record.video ? "true" : "false") +
            ",\"trashed\":" + (record.trashed ? "true" : "false") +
            ",\"present\":" + (record.present ? "true" : "false") + "}";
  }
  return text + "]";
}

// Summer, winter and after-2038 instants (seconds since 2001), a video in
// the trash, a picture outside DCIM, and two kept only in the cloud: one the
// index does not list, one it lists without a stored file. Thumbnails whose
// paths contain an original's come first in the index.
const std::vector<Asset> kAssets = {
    {1, "DCIM/100APPLE", "IMG_0001.HEIC", "583675200", 0, 0, "Beach.heic"},
    {2, "DCIM/100APPLE", "IMG_0002.MOV", "569246400.25", 1, 1, ""},
    {3, "PhotoData/CPLAssets/group1", "ABC.JPG", "1235908800", 0, 0, "Scan.jpg"},
    {4, "DCIM/100APPLE", "IMG_0003.JPG", "583675200", 0, 0, "Cloud.jpg"},
    {5, "DCIM/100APPLE", "IMG_0004.PNG", "583675200", 0, 0, ""},
    {6, "DCIM/101APPLE", "IMG_0005.PNG", "NULL", 0, 0, ""},
};

BackupBuilder PhotoBackup(IndexKind kind, const Generation& generation) {
  BackupBuilder builder(kind);
  builder.AddDatabase(kCameraRoll, kLibrary, Library(generation, kAssets))
      .AddFile(kCameraRoll, "Media/PhotoData/Thumbnails/V2/DCIM/100APPLE/IMG_0001.HEIC/5005.JPG", "thumb")
      .AddFile(kCameraRoll, "Media/PhotoData/Metadata/DCIM/100APPLE/IMG_0002.MOV.THM", "t")
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.HEIC", "heic bytes")
      .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0002.MOV", "movie")
      .AddFile(kCameraRoll, "Media/PhotoData/CPLAssets/group1/ABC.JPG", "jpg")
      .AddMissingFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0004.PNG")
      .AddFile(kCameraRoll, "Media/DCIM/101APPLE/IMG_0005.PNG", "");
  return builder;
}

// Assets whose file the backup lacks are listed too, with an empty path,
// size 0 and present false, and their date and names.
TEST(CurrentPhotos, EveryGenerationLocatedExactlyWithTrueDates) {
  for (IndexKind kind : kIndexKinds) {
    for (const Generation& generation : {kIos7, kIos11, kIos18}) {
      SCOPED_TRACE(generation.schema);
      TempDir root;
      const BackupBuilder builder = PhotoBackup(kind, generation);
      const std::string backup = builder.Write(root.Path() + "b");
      const auto stored = [&](const std::string& path) { return backup + builder.StoredPath(kCameraRoll, path); };
      const auto original = [&](const std::string& name) { return generation.originalNames ? name : ""; };
      for (const auto& [zone, summer, winter, later] :
           {std::tuple<const char*, const char*, const char*, const char*>{
                "UTC", "2019-07-01 12:00:00", "2019-01-15 12:00:00", "2040-03-01 12:00:00"},
            {"America/New_York", "2019-07-01 08:00:00", "2019-01-15 07:00:00", "2040-03-01 07:00:00"}}) {
        ScopedTimeZone timeZone(zone);
        ServedBackup served(backup, Service::Current);
        ASSERT_TRUE(served.Analysed());
        EXPECT_EQ(served.Answer(ContentCameraPhoto),
                  Answer({{"IMG_0001.HEIC", stored("Media/DCIM/100APPLE/IMG_0001.HEIC"), 10, true,
                           "Media/DCIM/100APPLE/IMG_0001.HEIC", summer, original("Beach.heic"), false, false},
                          {"IMG_0002.MOV", stored("Media/DCIM/100APPLE/IMG_0002.MOV"), 5, true,
                           "Media/DCIM/100APPLE/IMG_0002.MOV", winter, "", true, generation.trashed},
                          {"IMG_0003.JPG", "", 0, true, "Media/DCIM/100APPLE/IMG_0003.JPG", summer,
                           original("Cloud.jpg"), false, false, false},
                          {"IMG_0004.PNG", "", 0, true, "Media/DCIM/100APPLE/IMG_0004.PNG", summer, "", false, false,
                           false},
                          {"IMG_0005.PNG", stored("Media/DCIM/101APPLE/IMG_0005.PNG"), 0, true,
                           "Media/DCIM/101APPLE/IMG_0005.PNG", "", "", false, false}}))
            << zone;
        EXPECT_EQ(served.Answer(ContentOtherPhoto),
                  Answer({{"ABC.JPG", stored("Media/PhotoData/CPLAssets/group1/ABC.JPG"), 3, false,
                           "Media/PhotoData/CPLAssets/group1/ABC.JPG", later, original("Scan.jpg"), false, false}}))
            << zone;
      }
    }
  }
}

// The index's own look at each stored file gives the sizes: a picture that
// grows after the analysis is still reported as it was.
TEST(CurrentPhotos, SizesAreThoseSeenWhenTheIndexWasRead) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    const BackupBuilder builder = PhotoBackup(kind, kIos18);
    const std::string backup = builder.Write(root.Path() + "b");
    ServedBackup served(backup, Service::Current);
    ASSERT_TRUE(served.Analysed());
    WriteFile(backup + builder.StoredPath(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.HEIC"), "many more heic bytes");
    const std::string answer = served.Answer(ContentCameraPhoto);
    EXPECT_NE(answer.find("\"size\":10u"), std::string::npos) << answer;
  }
}

TEST(CurrentPhotos, TheDescribedServiceStillAnswersAsBefore) {
  TempDir root;
  const BackupBuilder builder = PhotoBackup(IndexKind::ManifestDb, kIos7);
  const std::string backup = builder.Write(root.Path() + "b");
  const auto stored = [&](const std::string& path) { return backup + builder.StoredPath(kCameraRoll, path); };
  ServedBackup described(backup, Service::Described);
  const auto dict = [](const std::string& name, const std::string& path, int size, int type, const std::string& query) {
    return "{\"file_name\":\"" + name + "\",\"path\":\"" + path + "\",\"size\":" + std::to_string(size) +
           "u,\"type\":" + std::to_string(type) + "u,\"query_path\":\"" + query + "\"}";
  };
  EXPECT_EQ(
      described.Answer(ContentCameraPhoto),
      "[" +
          dict("IMG_0001.HEIC", stored("Media/DCIM/100APPLE/IMG_0001.HEIC"), 10, 1,
               "Media/DCIM/100APPLE/IMG_0001.HEIC") +
          "," +
          dict("IMG_0002.MOV", stored("Media/DCIM/100APPLE/IMG_0002.MOV"), 5, 1, "Media/DCIM/100APPLE/IMG_0002.MOV") +
          "," +
          dict("IMG_0005.PNG", stored("Media/DCIM/101APPLE/IMG_0005.PNG"), 0, 1, "Media/DCIM/101APPLE/IMG_0005.PNG") +
          "]");
  EXPECT_EQ(described.Answer(ContentOtherPhoto), "[" +
                                                     dict("ABC.JPG", stored("Media/PhotoData/CPLAssets/group1/ABC.JPG"),
                                                          3, 0, "PhotoData/CPLAssets/group1/ABC.JPG") +
                                                     "]");
}

TEST(CurrentPhotos, TheOldestLibrariesPhotoTableKnowsVideosByTheirExtension) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    BackupBuilder builder(kind);
    builder
        .AddDatabase(kCameraRoll, kLibrary,
                     "CREATE TABLE Photo (directory VARCHAR, filename VARCHAR);\n"
                     "INSERT INTO Photo VALUES ('DCIM/100APPLE', 'IMG_0001.JPG'), ('DCIM/100APPLE', 'IMG_0002.mov'), "
                     "(NULL, 'NODIR.JPG');\n")
        .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.JPG", "jpg")
        .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0002.mov", "mov");
    const std::string backup = builder.Write(root.Path() + "b");
    const auto stored = [&](const std::string& path) { return backup + builder.StoredPath(kCameraRoll, path); };
    ServedBackup served(backup, Service::Current);
    EXPECT_EQ(served.Answer(ContentCameraPhoto),
              Answer({{"IMG_0001.JPG", stored("Media/DCIM/100APPLE/IMG_0001.JPG"), 3, true,
                       "Media/DCIM/100APPLE/IMG_0001.JPG", "", "", false, false},
                      {"IMG_0002.mov", stored("Media/DCIM/100APPLE/IMG_0002.mov"), 3, true,
                       "Media/DCIM/100APPLE/IMG_0002.mov", "", "", true, false}}));
    EXPECT_EQ(served.Answer(ContentOtherPhoto), "[]");
  }
}

TEST(CurrentPhotos, AssetsAddedInTheWalAreListed) {
  for (IndexKind kind : kIndexKinds) {
    TempDir root;
    BackupBuilder builder(kind);
    builder
        .AddDatabaseWithWal(kCameraRoll, kLibrary, Library(kIos18, {}),
                            Rows(kIos18, {{7, "DCIM/100APPLE", "IMG_0007.HEIC", "583675200", 0, 0, "Kept.heic"}}))
        .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0007.HEIC", "heic");
    const std::string backup = builder.Write(root.Path() + "b");
    ScopedTimeZone utc("UTC");
    ServedBackup served(backup, Service::Current);
    EXPECT_EQ(
        served.Answer(ContentCameraPhoto),
        Answer({{"IMG_0007.HEIC", backup + builder.StoredPath(kCameraRoll, "Media/DCIM/100APPLE/IMG_0007.HEIC"), 4,
                 true, "Media/DCIM/100APPLE/IMG_0007.HEIC", "2019-07-01 12:00:00", "Kept.heic", false, false}}));
  }
}

// A library kept only in the cloud still lists its assets, without files.
TEST(CurrentPhotos, ALibraryInAnotherDomainAnswersNullAndOneWithoutStoredFilesListsItsAssets) {
  TempDir root;
  const std::string elsewhere = BackupBuilder(IndexKind::ManifestDb)
                                    .AddDatabase("MediaDomain", kLibrary, Library(kIos18, {kAssets[0]}))
                                    .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.HEIC", "heic")
                                    .Write(root.Path() + "a");
  EXPECT_EQ(ServedBackup(elsewhere, Service::Current).Answer(ContentCameraPhoto), "null");
  const std::string cloudOnly = BackupBuilder(IndexKind::ManifestDb)
                                    .AddDatabase(kCameraRoll, kLibrary, Library(kIos18, {kAssets[0]}))
                                    .Write(root.Path() + "b");
  ScopedTimeZone utc("UTC");
  ServedBackup served(cloudOnly, Service::Current);
  EXPECT_EQ(served.Answer(ContentCameraPhoto),
            Answer({{"IMG_0001.HEIC", "", 0, true, "Media/DCIM/100APPLE/IMG_0001.HEIC", "2019-07-01 12:00:00",
                     "Beach.heic", false, false, false}}));
  EXPECT_EQ(served.Answer(ContentOtherPhoto), "[]");
}

// Where a picture was taken, when its library records it; -180 in both
// columns, or NULL, means no place.
TEST(CurrentPhotos, APictureGivesWhereItWasTakenWhenTheLibraryRecordsIt) {
  for (const Generation& generation : {kIos11, kIos18}) {
    std::string sql = Library(generation, {kAssets[0], kAssets[4], kAssets[5]});
    sql += "UPDATE " + generation.table + " SET ZLATITUDE = 51.5007, ZLONGITUDE = -0.1246 WHERE Z_PK = 1;\n" +
           "UPDATE " + generation.table + " SET ZLATITUDE = -180.0, ZLONGITUDE = -180.0 WHERE Z_PK = 5;\n";
    TempDir root;
    const std::string backup =
        BackupBuilder(IndexKind::ManifestDb).AddDatabase(kCameraRoll, kLibrary, sql).Write(root.Path() + "b");
    ScopedTimeZone utc("UTC");
    const std::string answer = ServedBackup(backup, Service::Current).Answer(ContentCameraPhoto);
    const std::string place = ",\"latitude\":51.5007r,\"longitude\":-0.1246r}";
    EXPECT_NE(answer.find("\"present\":false" + place), std::string::npos) << answer;
    EXPECT_EQ(answer.find("latitude"), answer.rfind("latitude")) << "only the first asset has a place: " << answer;
  }
}

}  // namespace
}  // namespace yhtest
