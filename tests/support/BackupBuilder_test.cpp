#include "support/BackupBuilder.h"

#include <gtest/gtest.h>
#include <plist/plist.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "support/SystemFiles.h"
#include "support/TreeSnapshot.h"

namespace {

namespace fs = std::filesystem;

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::ReadBytes;
using yhtest::TempDir;

// printf '%s' 'HomeDomain-Library/SMS/sms.db' | sha1sum
constexpr char kSmsId[] = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";

using PlistPtr = std::unique_ptr<void, void (*)(plist_t)>;

PlistPtr ParsePlist(const std::string& bytes) {
  plist_t root = nullptr;
  if (bytes.compare(0, 8, "bplist00") == 0) {
    plist_from_bin(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
  } else {
    plist_from_xml(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
  }
  return PlistPtr(root, plist_free);
}

std::string StringAt(plist_t dict, const char* key) {
  char* text = nullptr;
  plist_get_string_val(plist_dict_get_item(dict, key), &text);
  std::string value = text ? text : "<absent>";
  free(text);
  return value;
}

int32_t DateAt(plist_t dict, const char* key) {
  int32_t seconds = -1;
  int32_t micro = 0;
  plist_get_date_val(plist_dict_get_item(dict, key), &seconds, &micro);
  return seconds;
}

// Rows of a query as "a|b|c" texts, NULL as "NULL".
std::vector<std::string> Rows(const std::string& database, const char* sql) {
  sqlite3* handle = nullptr;
  sqlite3_open_v2(database.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr);
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> db(handle, sqlite3_close);
  std::vector<std::string> rows;
  sqlite3_exec(
      db.get(), sql,
      [](void* context, int count, char** values, char**) {
        std::string row;
        for (int i = 0; i < count; ++i) row += std::string(i ? "|" : "") + (values[i] ? values[i] : "NULL");
        static_cast<std::vector<std::string>*>(context)->push_back(row);
        return 0;
      },
      &rows, nullptr);
  return rows;
}

TEST(BackupBuilder, FileIdIsSha1OfDomainDashPath) {
  EXPECT_EQ(BackupBuilder::FileId("HomeDomain", "Library/SMS/sms.db"), kSmsId);
  EXPECT_EQ(BackupBuilder(IndexKind::ManifestDb).StoredPath("HomeDomain", "Library/SMS/sms.db"),
            std::string("3d/") + kSmsId);
  EXPECT_EQ(BackupBuilder(IndexKind::Mbdb).StoredPath("HomeDomain", "Library/SMS/sms.db"), kSmsId);
}

TEST(BackupBuilder, WritesInfoAsXmlAndManifestAsBinary) {
  TempDir dir;
  const std::string path = BackupBuilder(IndexKind::ManifestDb)
                               .InfoString("Device Name", "Phone")
                               .InfoDate("Last Backup Date", 1356998400)
                               .ManifestBool("IsEncrypted", true)
                               .ManifestDate("Date", 1356998400)
                               .LockdownString("DeviceName", "Lockdown Phone")
                               .Write(dir.Path() + "backup");
  EXPECT_EQ(path, dir.Path() + "backup/");

  const std::string infoBytes = ReadBytes(path + "Info.plist");
  EXPECT_EQ(infoBytes.compare(0, 5, "<?xml"), 0);
  PlistPtr info = ParsePlist(infoBytes);
  EXPECT_EQ(StringAt(info.get(), "Device Name"), "Phone");
  EXPECT_EQ(DateAt(info.get(), "Last Backup Date"), 1356998400 - 978307200);

  const std::string manifestBytes = ReadBytes(path + "Manifest.plist");
  EXPECT_EQ(manifestBytes.compare(0, 8, "bplist00"), 0);
  PlistPtr manifest = ParsePlist(manifestBytes);
  uint8_t encrypted = 0;
  plist_get_bool_val(plist_dict_get_item(manifest.get(), "IsEncrypted"), &encrypted);
  EXPECT_EQ(encrypted, 1);
  EXPECT_EQ(DateAt(manifest.get(), "Date"), 1356998400 - 978307200);
  EXPECT_EQ(StringAt(plist_dict_get_item(manifest.get(), "Lockdown"), "DeviceName"), "Lockdown Phone");

  EXPECT_NE(ParsePlist(ReadBytes(path + "Status.plist")).get(), nullptr);
}

TEST(BackupBuilder, LockdownOnlyWhenALockdownKeyIsSet) {
  TempDir dir;
  const std::string path =
      BackupBuilder(IndexKind::ManifestDb).ManifestBool("IsEncrypted", false).Write(dir.Path() + "b");
  EXPECT_EQ(plist_dict_get_item(ParsePlist(ReadBytes(path + "Manifest.plist")).get(), "Lockdown"), nullptr);
}

TEST(BackupBuilder, RawPlistBytesReplaceOrSkipTheFile) {
  TempDir dir;
  const std::string path =
      BackupBuilder(IndexKind::ManifestDb).RawInfoPlist("garbage").RawManifestPlist("").Write(dir.Path() + "b");
  EXPECT_EQ(ReadBytes(path + "Info.plist"), "garbage");
  EXPECT_FALSE(fs::exists(path + "Manifest.plist"));
}

TEST(BackupBuilder, ManifestDbIndexHasTheRealSchemaAndStoredFiles) {
  TempDir dir;
  const std::string path =
      BackupBuilder(IndexKind::ManifestDb)
          .AddFile("HomeDomain", "Library/SMS/sms.db", "contents")
          .AddDirectory("HomeDomain", "Library/SMS")
          .AddMissingFile("HomeDomain", "Library/gone")
          .AddDatabase("HomeDomain", "Library/t.db", "CREATE TABLE t (v); INSERT INTO t VALUES (7);")
          .Write(dir.Path() + "b");
  EXPECT_EQ(Rows(path + "Manifest.db", "SELECT fileID, domain, relativePath, flags, file FROM Files"),
            (std::vector<std::string>{
                std::string(kSmsId) + "|HomeDomain|Library/SMS/sms.db|1|NULL",
                BackupBuilder::FileId("HomeDomain", "Library/SMS") + "|HomeDomain|Library/SMS|2|NULL",
                BackupBuilder::FileId("HomeDomain", "Library/gone") + "|HomeDomain|Library/gone|1|NULL",
                BackupBuilder::FileId("HomeDomain", "Library/t.db") + "|HomeDomain|Library/t.db|1|NULL",
            }));
  EXPECT_EQ(Rows(path + "Manifest.db", "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name"),
            (std::vector<std::string>{"Files", "Properties"}));
  EXPECT_EQ(ReadBytes(path + "3d/" + kSmsId), "contents");
  EXPECT_FALSE(fs::exists(path + BackupBuilder(IndexKind::ManifestDb).StoredPath("HomeDomain", "Library/SMS")));
  EXPECT_FALSE(fs::exists(path + BackupBuilder(IndexKind::ManifestDb).StoredPath("HomeDomain", "Library/gone")));
  EXPECT_EQ(
      Rows(path + BackupBuilder(IndexKind::ManifestDb).StoredPath("HomeDomain", "Library/t.db"), "SELECT v FROM t"),
      std::vector<std::string>{"7"});
}

TEST(BackupBuilder, MbdbIndexHoldsOneRecordPerEntryWithRealSizes) {
  TempDir dir;
  const std::string path = BackupBuilder(IndexKind::Mbdb)
                               .AddFile("HomeDomain", "Library/SMS/sms.db", "12345")
                               .AddDirectory("HomeDomain", "Library/SMS")
                               .Write(dir.Path() + "b");
  yhtest::MbdbRecord file;
  file.domain = "HomeDomain";
  file.path = "Library/SMS/sms.db";
  file.inode = 1000;
  file.modified = file.accessed = file.changed = 1356998400;
  file.size = 5;
  yhtest::MbdbRecord folder;
  folder.domain = "HomeDomain";
  folder.path = "Library/SMS";
  folder.mode = 0x41ED;
  folder.inode = 1001;
  folder.modified = folder.accessed = folder.changed = 1356998400;
  EXPECT_EQ(ReadBytes(path + "Manifest.mbdb"), yhtest::MbdbSignature() + file.Bytes() + folder.Bytes());
  EXPECT_EQ(ReadBytes(path + kSmsId), "12345");
  EXPECT_FALSE(fs::exists(path + "Manifest.db"));
}

TEST(BackupBuilder, SparseFilesHaveTheirSizeInZeroBytesAndInTheIndex) {
  TempDir dir;
  const std::string path = BackupBuilder(IndexKind::Mbdb)
                               .AddSparseFile("HomeDomain", "Library/SMS/sms.db", 5)
                               .AddSparseFile("HomeDomain", "Library/empty", 0)
                               .Write(dir.Path() + "b");
  yhtest::MbdbRecord file;
  file.domain = "HomeDomain";
  file.path = "Library/SMS/sms.db";
  file.inode = 1000;
  file.modified = file.accessed = file.changed = 1356998400;
  file.size = 5;
  yhtest::MbdbRecord empty = file;
  empty.path = "Library/empty";
  empty.inode = 1001;
  empty.size = 0;
  EXPECT_EQ(ReadBytes(path + "Manifest.mbdb"), yhtest::MbdbSignature() + file.Bytes() + empty.Bytes());
  EXPECT_EQ(ReadBytes(path + kSmsId), std::string(5, '\0'));
  EXPECT_EQ(fs::file_size(path + BackupBuilder(IndexKind::Mbdb).StoredPath("HomeDomain", "Library/empty")), 0u);
}

TEST(MbdbRecord, BytesFollowTheIndexLayout) {
  yhtest::MbdbRecord record;
  record.domain = "D";
  record.path = "P";
  record.mode = 0x81A4;
  record.inode = 0x0102030405060708ULL;
  record.size = 0x0000000100000002LL;
  record.properties = {{"n", "v"}};
  const std::string expected = std::string(
                                   "\x00\x01"
                                   "D"
                                   "\x00\x01"
                                   "P"
                                   "\xFF\xFF\xFF\xFF\xFF\xFF",
                                   12) +
                               std::string("\x81\xA4\x01\x02\x03\x04\x05\x06\x07\x08", 10) +
                               std::string("\x00\x00\x01\xF5\x00\x00\x01\xF5", 8) + std::string(12, '\0') +
                               std::string("\x00\x00\x00\x01\x00\x00\x00\x02\x00\x01", 10) +
                               std::string(
                                   "\x00\x01"
                                   "n"
                                   "\x00\x01"
                                   "v",
                                   6);
  EXPECT_EQ(record.Bytes(), expected);
  EXPECT_EQ(yhtest::MbdbSignature(), std::string("mbdb\x05\x00", 6));
}

TEST(Schema, ReadsTheStoredSchemaText) {
  EXPECT_NE(yhtest::Schema("Manifest.db-ios14").find("CREATE TABLE Files"), std::string::npos);
}

TEST(TempDir, RemovesReadOnlyTrees) {
  std::string path;
  {
    TempDir dir;
    path = dir.Path();
    EXPECT_EQ(path.back(), '/');
    yhtest::WriteFile(path + "a/b/c", "x");
    yhtest::SetMode(path + "a/b/c", 0444);
    yhtest::SetMode(path + "a/b", 0555);
    yhtest::SetMode(path + "a", 0500);
  }
  EXPECT_FALSE(fs::exists(path));
}

TEST(TreeSnapshot, ChangesWhenAnEntryChanges) {
  TempDir dir;
  yhtest::WriteFile(dir.Path() + "sub/file", "one");
  const std::string before = yhtest::SnapshotTree(dir.Path());
  EXPECT_NE(before.find("sub/file f 3 "), std::string::npos);
  EXPECT_EQ(yhtest::SnapshotTree(dir.Path()), before);

  yhtest::WriteFile(dir.Path() + "sub/file", "two");
  const std::string rewritten = yhtest::SnapshotTree(dir.Path());
  EXPECT_NE(rewritten, before);
  yhtest::SetMode(dir.Path() + "sub/file", 0400);
  const std::string chmodded = yhtest::SnapshotTree(dir.Path());
  EXPECT_NE(chmodded, rewritten);
  yhtest::WriteFile(dir.Path() + "new", "");
  EXPECT_NE(yhtest::SnapshotTree(dir.Path()), chmodded);
}

}  // namespace
