#include "index/Mbdb.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "crypto/Sha1Name.h"
#include "index/StoredNames.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"
#include "support/SystemFiles.h"
#include "support/TreeSnapshot.h"

namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::MbdbRecord;
using yhtest::MbdbSignature;
using yhtest::StoredNamesAt;
using yhtest::TempDir;
using yhtest::WriteFile;

// Digests computed outside the library: printf '%s' 'HomeDomain-Library/SMS/sms.db' | sha1sum
constexpr char kSmsName[] = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";
// printf '%s' '-Library/SMS/sms.db' | sha1sum
constexpr char kSmsNameEmptyDomain[] = "7b025eff94f5b05cdf7316f4c76993ef4aba4586";

std::string Text(const std::string& bytes) {
  std::string out;
  out.push_back(static_cast<char>(bytes.size() >> 8));
  out.push_back(static_cast<char>(bytes.size() & 0xFF));
  return out + bytes;
}

// The 40-byte fixed block of a record without properties.
std::string FixedBlockOf(const MbdbRecord& record) {
  const std::string bytes = record.Bytes();
  return bytes.substr(bytes.size() - 40);
}

MbdbRecord File(const std::string& domain, const std::string& path) {
  MbdbRecord record;
  record.domain = domain;
  record.path = path;
  return record;
}

// A backup folder holding the given index bytes; `present` records get a stored file.
class MbdbTest : public ::testing::Test {
 protected:
  void WriteIndex(const std::string& bytes) { WriteFile(dir_.Path() + "Manifest.mbdb", bytes); }
  void Store(const std::string& domain, const std::string& path) {
    WriteFile(dir_.Path() + BackupBuilder::FileId(domain, path), "stored");
  }
  int32_t Read() { return reader_.ReadMBDB(dir_.Path().c_str()); }
  std::vector<std::string> KeptPaths() {
    std::vector<std::string> paths;
    for (const Mbdb::MBFileRecord* record : *reader_.GetContentList()) paths.emplace_back(record->path());
    return paths;
  }

  TempDir dir_;
  Mbdb reader_;
};

TEST_F(MbdbTest, MissingIndexReturnsZeroAndLeavesTheFolderAlone) {
  const std::string before = yhtest::SnapshotTree(dir_.Path());
  EXPECT_EQ(Read(), 0);
  EXPECT_TRUE(reader_.GetContentList()->empty());
  EXPECT_EQ(yhtest::SnapshotTree(dir_.Path()), before);
}

TEST_F(MbdbTest, FileShorterThanTheSignatureReturnsZero) {
  WriteIndex(std::string("mbdb\x05", 5));
  EXPECT_EQ(Read(), 0);
}

TEST_F(MbdbTest, WrongSignatureReturnsZeroAndKeepsNothing) {
  Store("HomeDomain", "Library/SMS/sms.db");
  WriteIndex(std::string("mbdb\x04\x00", 6) + File("HomeDomain", "Library/SMS/sms.db").Bytes());
  EXPECT_EQ(Read(), 0);
  EXPECT_TRUE(reader_.GetContentList()->empty());
  EXPECT_TRUE(StoredNamesAt(reader_, "Library/SMS/sms.db").empty());
}

TEST_F(MbdbTest, SignatureAloneReturnsOneWithEmptyLists) {
  WriteIndex(MbdbSignature());
  EXPECT_EQ(Read(), 1);
  EXPECT_TRUE(reader_.GetContentList()->empty());
  EXPECT_TRUE(reader_.GetQueryPathKeyMap()->empty());
  EXPECT_TRUE(StoredNamesAt(reader_, "Library/SMS/sms.db").empty());
  EXPECT_TRUE(StoredNamesAt(reader_, "Library/Calendar/Calendar.sqlitedb").empty());
}

TEST_F(MbdbTest, KeepsTheBackupPathAsGiven) {
  WriteIndex(MbdbSignature());
  Read();
  EXPECT_EQ(reader_.GetBackupPath(), dir_.Path());
}

TEST(MbdbStoredName, IsLowerCaseSha1OfDomainDashPath) {
  EXPECT_EQ(MbdbStoredName("HomeDomain", "Library/SMS/sms.db"), kSmsName);
  EXPECT_EQ(MbdbStoredName("", "Library/SMS/sms.db"), kSmsNameEmptyDomain);
  // printf '%s' '-' | sha1sum
  EXPECT_EQ(MbdbStoredName("", ""), "3bc15c8aae3e4124dd409035f32ea2fd6835efc9");
}

TEST(MbdbStoredName, UsesTwentyByteSha1) {
  LoadGcry();
  EXPECT_EQ(yh_gcry_md_get_algo_dlen(2), 20u);
  UnloadGcry();
}

TEST_F(MbdbTest, RecordIsFoundUnderItsHashedName) {
  WriteFile(dir_.Path() + kSmsName, "db");
  WriteFile(dir_.Path() + kSmsNameEmptyDomain, "db");
  WriteIndex(MbdbSignature() + File("HomeDomain", "Library/SMS/sms.db").Bytes() +
             File("", "Library/SMS/sms.db").Bytes());
  EXPECT_EQ(Read(), 1);
  ASSERT_EQ(reader_.GetContentList()->size(), 2u);
  EXPECT_EQ(reader_.GetContentList()->at(0)->storedName(), kSmsName);
  EXPECT_EQ(reader_.GetContentList()->at(1)->storedName(), kSmsNameEmptyDomain);
  EXPECT_EQ(StoredNamesAt(reader_, "Library/SMS/sms.db"), (std::vector<std::string>{kSmsName, kSmsNameEmptyDomain}));
}

class MbdbFieldsTest : public MbdbTest, public ::testing::WithParamInterface<const char*> {
 protected:
  yhtest::ScopedTimeZone zone_{GetParam()};
};

TEST_P(MbdbFieldsTest, DecodesEveryFieldAndKeepsTimesInUtc) {
  MbdbRecord record = File("HomeDomain", "Library/SMS/sms.db");
  record.linkTarget = "target";
  record.dataHash = std::string("\x01\xAB\xFF", 3);
  record.encryptionKey = "key";
  record.mode = 0x81A4;
  record.inode = 0xFFFFFFFE00000002ULL;
  record.userId = 501;
  record.groupId = 20;
  record.modified = 1356998400;  // 2013-01-01 00:00:00 UTC
  record.accessed = 0x12345678;  // 1979-09-05 22:51:36 UTC
  record.changed = 0xFFFFFFFF;   // 2106-02-07 06:28:15 UTC: the seconds are unsigned
  record.size = 0x0000000100000005LL;
  record.protectionClass = 4;
  record.properties = {{"Name", "Value"}, {"Binary", std::string("\x00\x1F", 2)}};
  Store(record.domain, record.path);
  WriteIndex(MbdbSignature() + record.Bytes());

  ASSERT_EQ(Read(), 1);
  ASSERT_EQ(reader_.GetContentList()->size(), 1u);
  const Mbdb::MBFileRecord& kept = *reader_.GetContentList()->front();
  EXPECT_EQ(kept.domain(), "HomeDomain");
  EXPECT_EQ(kept.path(), "Library/SMS/sms.db");
  EXPECT_EQ(kept.linkTarget(), "target");
  EXPECT_EQ(kept.dataHash(), "01ABFF");
  EXPECT_EQ(kept.encryptionKey(), "key");
  EXPECT_EQ(kept.fixedBlockText(),
            "81A4 FFFFFFFE 00000002 000001F5 00000014 50E22700 12345678 FFFFFFFF 0000000100000005 04 02");
  EXPECT_EQ(kept.mode(), 0x81A4);
  EXPECT_EQ(kept.inodeHigh(), -2);
  EXPECT_EQ(kept.inodeLow(), 2u);
  EXPECT_EQ(kept.userId(), 501u);
  EXPECT_EQ(kept.groupId(), 20u);
  EXPECT_EQ(kept.modified().tm_year, 113);
  EXPECT_EQ(kept.modified().tm_mon, 0);
  EXPECT_EQ(kept.modified().tm_mday, 1);
  EXPECT_EQ(kept.modified().tm_hour, 0);
  EXPECT_EQ(kept.accessed().tm_year, 79);
  EXPECT_EQ(kept.accessed().tm_mon, 8);
  EXPECT_EQ(kept.accessed().tm_mday, 5);
  EXPECT_EQ(kept.accessed().tm_hour, 22);
  EXPECT_EQ(kept.accessed().tm_min, 51);
  EXPECT_EQ(kept.accessed().tm_sec, 36);
  EXPECT_EQ(kept.accessed().tm_yday, 247);
  EXPECT_EQ(kept.accessed().tm_isdst, 0);
  EXPECT_EQ(kept.changed().tm_year, 206);
  EXPECT_EQ(kept.changed().tm_mon, 1);
  EXPECT_EQ(kept.changed().tm_mday, 7);
  EXPECT_EQ(kept.changed().tm_hour, 6);
  EXPECT_EQ(kept.size(), 5);
  EXPECT_EQ(kept.protectionClass(), 4);
  EXPECT_EQ(kept.propertyCount(), 2);
  ASSERT_NE(kept.properties(), nullptr);
  EXPECT_EQ(kept.properties()[0].name, "Name");
  EXPECT_EQ(kept.properties()[0].value, "Value");
  EXPECT_EQ(kept.properties()[1].name, "Binary");
  EXPECT_EQ(kept.properties()[1].value, "001F");
}

INSTANTIATE_TEST_SUITE_P(Zones, MbdbFieldsTest, ::testing::Values("UTC", "America/New_York"));

TEST_F(MbdbTest, SizeAboveFourGibKeepsOnlyTheLow32Bits) {
  MbdbRecord big = File("MediaDomain", "Media/big.mov");
  big.size = 0x0000000200000010LL;  // 8 GiB + 16
  MbdbRecord wraps = File("MediaDomain", "Media/wraps.mov");
  wraps.size = 0x00000001FFFFFFFFLL;
  Store(big.domain, big.path);
  Store(wraps.domain, wraps.path);
  WriteIndex(MbdbSignature() + big.Bytes() + wraps.Bytes());
  ASSERT_EQ(Read(), 1);
  ASSERT_EQ(reader_.GetContentList()->size(), 2u);
  EXPECT_EQ(reader_.GetContentList()->at(0)->size(), 16);
  EXPECT_EQ(reader_.GetContentList()->at(1)->size(), -1);
}

TEST_F(MbdbTest, EmptyStringsConsumeOnlyTheirLengthBytes) {
  // Domain of length 0, link target and data hash as 0xFFFF, key of length 0.
  MbdbRecord record = File("", "Library/SMS/sms.db");
  record.mode = 0x41ED;
  WriteFile(dir_.Path() + kSmsNameEmptyDomain, "db");
  WriteIndex(MbdbSignature() + std::string("\x00\x00", 2) + Text("Library/SMS/sms.db") + "\xFF\xFF" + "\xFF\xFF" +
             std::string("\x00\x00", 2) + FixedBlockOf(record));
  ASSERT_EQ(Read(), 1);
  ASSERT_EQ(reader_.GetContentList()->size(), 1u);
  const Mbdb::MBFileRecord& kept = *reader_.GetContentList()->front();
  EXPECT_EQ(kept.domain(), "");
  EXPECT_EQ(kept.linkTarget(), "");
  EXPECT_EQ(kept.dataHash(), "");
  EXPECT_EQ(kept.encryptionKey(), "");
  EXPECT_EQ(kept.mode(), 0x41ED);
  EXPECT_EQ(kept.storedName(), kSmsNameEmptyDomain);
}

TEST_F(MbdbTest, RecordCutInsideItsFixedBlockIsDropped) {
  Store("HomeDomain", "Library/SMS/sms.db");
  Store("HomeDomain", "Library/Notes/notes.sqlite");
  const std::string second = File("HomeDomain", "Library/Notes/notes.sqlite").Bytes();
  WriteIndex(MbdbSignature() + File("HomeDomain", "Library/SMS/sms.db").Bytes() + second.substr(0, second.size() - 1));
  EXPECT_EQ(Read(), 1);
  EXPECT_EQ(KeptPaths(), std::vector<std::string>{"Library/SMS/sms.db"});
  EXPECT_TRUE(StoredNamesAt(reader_, "Library/Notes/notes.sqlite").empty());
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->Find("Library/SMS/sms.db"), reader_.GetContentList()->front());
}

TEST_F(MbdbTest, RecordCutInsideAStringIsDropped) {
  Store("HomeDomain", "Library/SMS/sms.db");
  WriteIndex(MbdbSignature() + File("HomeDomain", "Library/SMS/sms.db").Bytes() + Text("HomeDomain") +
             std::string("\x00\x20", 2) + "Library/");
  EXPECT_EQ(Read(), 1);
  EXPECT_EQ(KeptPaths(), std::vector<std::string>{"Library/SMS/sms.db"});
}

TEST_F(MbdbTest, RecordEndingAfterOneLengthByteIsDropped) {
  Store("HomeDomain", "Library/SMS/sms.db");
  WriteIndex(MbdbSignature() + File("HomeDomain", "Library/SMS/sms.db").Bytes() + std::string("\x00", 1));
  EXPECT_EQ(Read(), 1);
  EXPECT_EQ(KeptPaths(), std::vector<std::string>{"Library/SMS/sms.db"});
}

TEST_F(MbdbTest, FailedPropertyReadEndsReadingAndKeepsEarlierRecords) {
  MbdbRecord withProperties = File("HomeDomain", "Library/Notes/notes.sqlite");
  withProperties.properties = {{"first", "value"}, {"second", "value"}};
  const std::string bytes = withProperties.Bytes();
  Store("HomeDomain", "Library/SMS/sms.db");
  Store(withProperties.domain, withProperties.path);
  // Cut inside the value of the second property.
  WriteIndex(MbdbSignature() + File("HomeDomain", "Library/SMS/sms.db").Bytes() + bytes.substr(0, bytes.size() - 2));
  EXPECT_EQ(Read(), 1);
  EXPECT_EQ(KeptPaths(), std::vector<std::string>{"Library/SMS/sms.db"});
  EXPECT_TRUE(StoredNamesAt(reader_, "Library/Notes/notes.sqlite").empty());
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->Find("Library/Notes/notes.sqlite"), nullptr);
}

TEST_F(MbdbTest, RecordsWithoutStoredFileAreSkippedAndReadingGoesOn) {
  Store("HomeDomain", "Library/Notes/notes.sqlite");
  WriteIndex(MbdbSignature() + File("HomeDomain", "Library/SMS/sms.db").Bytes() +
             File("HomeDomain", "Library/Notes/notes.sqlite").Bytes());
  EXPECT_EQ(Read(), 1);
  EXPECT_EQ(KeptPaths(), std::vector<std::string>{"Library/Notes/notes.sqlite"});
  EXPECT_TRUE(StoredNamesAt(reader_, "Library/SMS/sms.db").empty());
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->Find("Library/SMS/sms.db"), nullptr);
  EXPECT_EQ(StoredNamesAt(reader_, "Library/Notes/notes.sqlite"),
            std::vector<std::string>{BackupBuilder::FileId("HomeDomain", "Library/Notes/notes.sqlite")});
}

TEST_F(MbdbTest, EachRecordNamesItsStoredFileThroughTheIndexInterface) {
  const char* const paths[] = {"Library/SMS/sms.db", "Library/SMS/sms.db-wal", "NoteStore.sqlite",
                               "Library/Calendar/Calendar.sqlitedb"};
  std::string index = MbdbSignature();
  for (const char* path : paths) {
    Store("HomeDomain", path);
    index += File("HomeDomain", path).Bytes();
  }
  WriteIndex(index);
  ASSERT_EQ(Read(), 1);
  const IndexReader& reader = reader_;
  EXPECT_EQ(reader.Type(), BackupType::Mbdb);
  ASSERT_EQ(reader.RecordCount(), 4u);
  for (size_t position = 0; position < 4; ++position) {
    EXPECT_EQ(reader.DomainAt(position), "HomeDomain");
    EXPECT_EQ(reader.PathAt(position), paths[position]);
    EXPECT_EQ(reader.StoredNameAt(position), BackupBuilder::FileId("HomeDomain", paths[position]));
    EXPECT_EQ(reader.StoredAt(position).size, 6u);
    EXPECT_EQ(reader.MappedAt(paths[position]), position);
  }
  EXPECT_EQ(reader.MappedAt("Library/SMS"), std::nullopt);
}

TEST_F(MbdbTest, SamePathTwiceKeepsBothMapsTheLaterAndGivesTwoKeys) {
  Store("HomeDomain", "Library/SMS/sms.db");
  Store("AppDomain-com.example", "Library/SMS/sms.db");
  WriteIndex(MbdbSignature() + File("HomeDomain", "Library/SMS/sms.db").Bytes() +
             File("AppDomain-com.example", "Library/SMS/sms.db").Bytes());
  ASSERT_EQ(Read(), 1);
  ASSERT_EQ(reader_.GetContentList()->size(), 2u);
  EXPECT_EQ(reader_.GetQueryPathKeyMap()->Find("Library/SMS/sms.db"), reader_.GetContentList()->at(1));
  EXPECT_EQ(StoredNamesAt(reader_, "Library/SMS/sms.db"),
            (std::vector<std::string>{BackupBuilder::FileId("HomeDomain", "Library/SMS/sms.db"),
                                      BackupBuilder::FileId("AppDomain-com.example", "Library/SMS/sms.db")}));
}

TEST_F(MbdbTest, ReadsABuiltBackup) {
  const std::string path = BackupBuilder(IndexKind::Mbdb)
                               .AddFile("HomeDomain", "Library/SMS/sms.db", "12345")
                               .AddDirectory("HomeDomain", "Library/SMS")
                               .AddMissingFile("HomeDomain", "Library/Notes/notes.sqlite")
                               .Write(dir_.Path() + "backup");
  ASSERT_EQ(reader_.ReadMBDB(path.c_str()), 1);
  ASSERT_EQ(reader_.GetContentList()->size(), 1u);
  EXPECT_EQ(reader_.GetContentList()->front()->size(), 5);
  EXPECT_EQ(StoredNamesAt(reader_, "Library/SMS/sms.db"), std::vector<std::string>{kSmsName});
  EXPECT_TRUE(StoredNamesAt(reader_, "Library/Notes/notes.sqlite").empty());
}

TEST_F(MbdbTest, PathIndexCoversTheContentListInOrderAndIsMadeOnce) {
  Store("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG");
  Store("HomeDomain", "Library/SMS/sms.db");
  Store("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG.bak");
  WriteIndex(MbdbSignature() + File("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG").Bytes() +
             File("HomeDomain", "Library/SMS/sms.db").Bytes() +
             File("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG.bak").Bytes());
  ASSERT_EQ(Read(), 1);
  const PathIndex& index = reader_.GetPathIndex();
  EXPECT_EQ(&reader_.GetPathIndex(), &index);
  std::vector<size_t> positions;
  index.ForEachContaining("100APPLE/IMG_0001.JPG", [&positions](size_t position) {
    positions.push_back(position);
    return true;
  });
  EXPECT_EQ(positions, (std::vector<size_t>{0, 2}));
}

TEST_F(MbdbTest, ReadingLeavesAReadOnlyBackupUntouched) {
  const std::string path = BackupBuilder(IndexKind::Mbdb)
                               .AddFile("HomeDomain", "Library/SMS/sms.db", "12345")
                               .AddMissingFile("HomeDomain", "Library/Notes/notes.sqlite")
                               .Write(dir_.Path() + "backup");
  for (const auto& entry : std::filesystem::directory_iterator(path)) yhtest::SetMode(entry.path().string(), 0444);
  yhtest::SetMode(path, 0555);
  const std::string before = yhtest::SnapshotTree(path);
  EXPECT_EQ(reader_.ReadMBDB(path.c_str()), 1);
  EXPECT_EQ(reader_.GetContentList()->size(), 1u);
  EXPECT_EQ(yhtest::SnapshotTree(path), before);
}

// getS and getD on a temporary file holding the bytes.
class MbdbValueTest : public ::testing::Test {
 protected:
  FILE* Open(const std::string& bytes) {
    file_.reset(std::tmpfile());
    std::fwrite(bytes.data(), 1, bytes.size(), file_.get());
    std::rewind(file_.get());
    return file_.get();
  }
  std::unique_ptr<FILE, int (*)(FILE*)> file_{nullptr, std::fclose};
};

TEST_F(MbdbValueTest, StringWithFFFFLengthIsEmptyAndConsumesTwoBytes) {
  FILE* file = Open("\xFF\xFFnext");
  std::string out = "kept";
  EXPECT_TRUE(Mbdb::getS(file, &out));
  EXPECT_EQ(out, "kept");
  EXPECT_EQ(std::ftell(file), 2);
}

TEST_F(MbdbValueTest, StringWithZeroLengthIsEmptyAndConsumesTwoBytes) {
  FILE* file = Open(std::string("\x00\x00next", 6));
  std::string out;
  EXPECT_TRUE(Mbdb::getS(file, &out));
  EXPECT_EQ(out, "");
  EXPECT_EQ(std::ftell(file), 2);
}

TEST_F(MbdbValueTest, StringIsAppended) {
  FILE* file = Open(Text("abc") + "rest");
  std::string out = "x";
  EXPECT_TRUE(Mbdb::getS(file, &out));
  EXPECT_EQ(out, "xabc");
  EXPECT_EQ(std::ftell(file), 5);
}

TEST_F(MbdbValueTest, StringEndsAtAnEmbeddedZeroButConsumesItsLength) {
  FILE* file = Open(Text(std::string("ab\0cd", 5)));
  std::string out;
  EXPECT_TRUE(Mbdb::getS(file, &out));
  EXPECT_EQ(out, "ab");
  EXPECT_EQ(std::ftell(file), 7);
}

TEST_F(MbdbValueTest, StringFailsAtTheEndOfTheFile) {
  std::string out;
  EXPECT_FALSE(Mbdb::getS(Open(""), &out));
  EXPECT_FALSE(Mbdb::getS(Open(std::string("\x00", 1)), &out));
  EXPECT_FALSE(Mbdb::getS(Open(std::string("\x00\x05"
                                           "abcd",
                                           6)),
                          &out));
}

TEST_F(MbdbValueTest, PrintableDataStaysText) {
  std::string out;
  EXPECT_TRUE(Mbdb::getD(Open(Text(" az~\x7F")), &out));
  EXPECT_EQ(out, " az~\x7F");
}

TEST_F(MbdbValueTest, DataWithAByteBelow32BecomesUpperCaseHex) {
  std::string out;
  EXPECT_TRUE(Mbdb::getD(Open(Text(std::string("\x00\x1F", 2))), &out));
  EXPECT_EQ(out, "001F");
}

TEST_F(MbdbValueTest, HexCoversEveryDeclaredByte) {
  std::string out;
  EXPECT_TRUE(Mbdb::getD(Open(Text(std::string("\x1F"
                                               "A\0B",
                                               4))),
                         &out));
  EXPECT_EQ(out, "1F410042");
  out.clear();
  EXPECT_TRUE(Mbdb::getD(Open(Text("A\x80z")), &out));
  EXPECT_EQ(out, "41807A");
}

TEST_F(MbdbValueTest, DataLengthRulesMatchStrings) {
  std::string out;
  EXPECT_TRUE(Mbdb::getD(Open("\xFF\xFF"), &out));
  EXPECT_TRUE(Mbdb::getD(Open(std::string("\x00\x00", 2)), &out));
  EXPECT_EQ(out, "");
  EXPECT_FALSE(Mbdb::getD(Open(std::string("\x00\x03\x01", 3)), &out));
}

TEST(MbdbHex, DigitsAndValues) {
  EXPECT_EQ(Mbdb::toHex(0x3A), 'A');
  EXPECT_EQ(Mbdb::toHex(9), '9');
  EXPECT_EQ(Mbdb::toHexLow(0xFB), 'b');
  EXPECT_EQ(Mbdb::fromHex('7'), 7);
  EXPECT_EQ(Mbdb::fromHex('c'), 12);
  EXPECT_EQ(Mbdb::fromHex('F'), 15);
  EXPECT_EQ(Mbdb::fromHex('g'), 0);
}

TEST(MbdbHex, GroupedTextPutsOneSpaceBetweenGroups) {
  const unsigned char data[] = {0x01, 0x02, 0xAB, 0xCD, 0xEF, 0x10};
  const int groups[] = {1, 3, 2};
  EXPECT_EQ(Mbdb::toHex(data, 6, groups, 3), "01 02ABCD EF10");
  const int wide[] = {2};
  EXPECT_EQ(Mbdb::toHex(data, 6, wide, 1), "0102ABCDEF10");
}

}  // namespace
