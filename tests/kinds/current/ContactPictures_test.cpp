#include <gtest/gtest.h>

#include <plist/plist.h>

#include <filesystem>
#include <string>

#include "kinds/AddressBookSql.h"
#include "support/BackupBuilder.h"
#include "support/NoteStoreBody.h"
#include "support/PlistDump.h"
#include "support/ScopedEnv.h"
#include "support/ServedBackup.h"

namespace yhtest {
namespace {

const char kImagesPath[] = "Library/AddressBook/AddressBookImages.sqlitedb";
const std::string kJpeg = std::string("\xFF\xD8\xFF\xE0", 4) + "Ada's picture";
const std::string kSmallPng = std::string("\x89PNG\r\n\x1A\n", 8) + "small";
const std::string kLargePng = std::string("\x89PNG\r\n\x1A\n", 8) + "Grace's larger picture";
const std::string kHeic = std::string("\0\0\0\x18" "ftypheic", 12) + "Mary's picture";
// What newer devices keep as some thumbnails: pixels without a format.
const std::string kPixels = std::string("\x00\x10\x20\x30\x40\x50", 6);

std::string People() {
  AddressBook book("AddressBook.sqlitedb-ios15");
  book.Person(1, "First", "'Ada'")
      .Person(2, "First", "'Grace'")
      .Person(3, "First", "'Alan'")
      .Person(4, "First", "'Mary'");
  return book.Sql();
}

// Ada has a whole picture and a thumbnail of pixels; Grace a whole picture
// of pixels and two thumbnails; Alan a thumbnail of pixels alone; Mary a
// HEIC picture; nobody of the address book is person 9.
std::string Images() {
  return Schema("AddressBookImages.sqlitedb-ios9") +
         "INSERT INTO ABFullSizeImage (record_id, crop_x, crop_y, crop_width, data) VALUES (1, 0, 0, 320, " +
         SqlBlob(kJpeg) + "), (2, 0, 0, 320, " + SqlBlob(kPixels) + "), (4, 0, 0, 320, " + SqlBlob(kHeic) +
         "), (9, 0, 0, 320, " + SqlBlob(kJpeg) + ");\n"
         "INSERT INTO ABThumbnailImage (record_id, format, derived_from_format, data) VALUES (1, 0, 2, " +
         SqlBlob(kPixels) + "), (2, 0, 2, " + SqlBlob(kSmallPng) + "), (2, 2, 2, " + SqlBlob(kLargePng) +
         "), (3, 0, 2, " + SqlBlob(kPixels) + ");\n";
}

uint64_t SizeOf(plist_t dict) {
  uint64_t size = 0;
  plist_get_uint_val(plist_dict_get_item(dict, "picture_size"), &size);
  return size;
}

struct Picture {
  std::string mimeType;
  std::string bytes;  // "" for none
  std::string fileName;
};

void ExpectPictures(ServedBackup& served, const std::string& backup) {
  const Picture expected[] = {{"image/jpeg", kJpeg, "1.jpg"},
                              {"image/png", kLargePng, "2.png"},
                              {"", "", ""},
                              {"image/heic", kHeic, "4.heic"}};
  plist_t people = served.Tree(ContentContact);
  ASSERT_EQ(plist_array_get_size(people), 4u);
  for (uint32_t at = 0; at < 4; ++at) {
    SCOPED_TRACE(at);
    plist_t person = plist_array_get_item(people, at);
    const std::string path = StringAt(person, "picture_path");
    EXPECT_EQ(StringAt(person, "picture_mime_type"), expected[at].mimeType);
    EXPECT_EQ(SizeOf(person), expected[at].bytes.size());
    if (expected[at].bytes.empty()) {
      EXPECT_EQ(path, "");
      continue;
    }
    EXPECT_EQ(ReadBytes(path), expected[at].bytes);
    EXPECT_EQ(path.substr(path.rfind('/') + 1), expected[at].fileName);
    EXPECT_NE(path.compare(0, backup.size(), backup), 0) << "written outside the backup: " << path;
  }
  plist_free(people);
}

TEST(ContactPictures, EachPersonsPictureIsWrittenOutWithItsTypeAndSize) {
  for (IndexKind kind : {IndexKind::ManifestDb, IndexKind::Mbdb}) {
    TempDir root;
    const std::string backup = BackupBuilder(kind)
                                   .AddDatabase("HomeDomain", kAddressBookPath, People())
                                   .AddDatabase("HomeDomain", kImagesPath, Images())
                                   .Write(root.Path() + "b");
    std::string path;
    {
      ServedBackup served(backup, Service::Current);
      ExpectPictures(served, backup);
      plist_t people = served.Tree(ContentContact);
      path = StringAt(plist_array_get_item(people, 0), "picture_path");
      plist_free(people);
    }
    EXPECT_FALSE(std::filesystem::exists(path)) << "removed with the record";
  }
}

TEST(ContactPictures, AnEncryptedBackupsPicturesAreWrittenOutToo) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabase("HomeDomain", kAddressBookPath, People())
                                 .AddDatabase("HomeDomain", kImagesPath, Images())
                                 .Encrypt({"pw", 1, 1})
                                 .Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current, "pw");
  ExpectPictures(served, backup);
}

TEST(ContactPictures, TheDescribedServiceHasNoPictures) {
  TempDir root;
  const std::string backup = BackupBuilder(IndexKind::ManifestDb)
                                 .AddDatabase("HomeDomain", kAddressBookPath, People())
                                 .AddDatabase("HomeDomain", kImagesPath, Images())
                                 .Write(root.Path() + "b");
  ServedBackup described(backup, Service::Described);
  EXPECT_EQ(described.Answer(ContentContact).find("picture"), std::string::npos);
}

// A person deleted while the log was written keeps the picture still stored
// under its id.
TEST(ContactPictures, ADeletedPersonKeepsThePictureStoredUnderItsId) {
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb)
          .AddDatabaseWithWal("HomeDomain", kAddressBookPath, "PRAGMA secure_delete=OFF;\n" + People(),
                              "DELETE FROM ABPerson WHERE ROWID = 4;\n")
          .AddDatabase("HomeDomain", kImagesPath, Images())
          .Write(root.Path() + "b");
  ServedBackup served(backup, Service::Current);
  plist_t deleted = served.DeletedTree(ContentContact);
  ASSERT_EQ(plist_array_get_size(deleted), 1u) << served.DeletedAnswer(ContentContact);
  plist_t mary = plist_array_get_item(deleted, 0);
  EXPECT_EQ(StringAt(mary, "name"), "Mary");
  EXPECT_EQ(StringAt(mary, "picture_mime_type"), "image/heic");
  EXPECT_EQ(ReadBytes(StringAt(mary, "picture_path")), kHeic);
  plist_free(deleted);
}

// A damaged images database costs the pictures, never the people.
TEST(ContactPictures, AnImagesDatabaseWithoutItsColumnsGivesNoPictures) {
  for (const char* images : {"CREATE TABLE ABFullSizeImage (record_id INTEGER);\n",
                             "CREATE TABLE ABThumbnailImage (data BLOB);\n"
                             "INSERT INTO ABThumbnailImage VALUES (X'FFD8FF');\n",
                             "not a database"}) {
    TempDir root;
    BackupBuilder builder(IndexKind::ManifestDb);
    builder.AddDatabase("HomeDomain", kAddressBookPath, People());
    if (std::string(images) == "not a database") {
      builder.AddFile("HomeDomain", kImagesPath, images);
    } else {
      builder.AddDatabase("HomeDomain", kImagesPath, images);
    }
    ServedBackup served(builder.Write(root.Path() + "b"), Service::Current);
    const std::string answer = served.Answer(ContentContact);
    EXPECT_NE(answer.find("\"name\":\"Mary\""), std::string::npos) << images;
    EXPECT_EQ(answer.find("image/"), std::string::npos) << images;
  }
}

}  // namespace
}  // namespace yhtest
