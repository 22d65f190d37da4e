#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdint>
#include <string>
#include <vector>

#include "common/PlistHelpers.h"
#include "fault/FaultBench.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"

// Property lists that libplist cannot survive: nesting deep enough to
// overflow its recursion (binary parsing, and freeing any tree), and binary
// lists whose objects refer twice to the next one, which it expands into
// 2^n nodes (a 200-byte file took minutes and gigabytes). Such a file reads
// as unreadable; ordinary lists, shared objects included, read as before.
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::TempDir;

void BigEndian(std::string& out, uint64_t value, int bytes) {
  for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>(value >> (8 * i) & 0xFF);
}

// A binary list of `levels` arrays, each holding `refs` references to the
// next one, and a boolean at the bottom.
std::string NestedBinary(int levels, int refs) {
  std::string bytes = "bplist00";
  std::vector<uint64_t> offsets;
  for (int i = 0; i < levels; ++i) {
    offsets.push_back(bytes.size());
    bytes += static_cast<char>(0xA0 | refs);
    for (int r = 0; r < refs; ++r) BigEndian(bytes, static_cast<uint64_t>(i + 1), 4);
  }
  offsets.push_back(bytes.size());
  bytes += '\x08';
  const uint64_t table = bytes.size();
  for (uint64_t offset : offsets) BigEndian(bytes, offset, 4);
  bytes += std::string(6, '\0');
  bytes += '\x04';
  bytes += '\x04';
  BigEndian(bytes, offsets.size(), 8);
  BigEndian(bytes, 0, 8);
  BigEndian(bytes, table, 8);
  return bytes;
}

std::string NestedXml(int levels) {
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">";
  for (int i = 0; i < levels; ++i) xml += "<array>";
  for (int i = 0; i < levels; ++i) xml += "</array>";
  return xml + "</plist>\n";
}

plist_t ReadBytes(const TempDir& dir, const std::string& bytes) {
  yhtest::WriteFile(dir.Path() + "list.plist", bytes);
  return ReadPlist((dir.Path() + "list.plist").c_str());
}

TEST(PlistBombs, ReferencesThatDoubleAtEveryLevelAreRefused) {
  TempDir dir;
  EXPECT_EQ(ReadBytes(dir, NestedBinary(40, 2)), nullptr);
}

TEST(PlistBombs, NestingBeyondFiveHundredAndTwelveLevelsIsRefused) {
  TempDir dir;
  EXPECT_EQ(ReadBytes(dir, NestedBinary(100000, 1)), nullptr);
  EXPECT_EQ(ReadBytes(dir, NestedXml(1000000)), nullptr);
  EXPECT_EQ(ReadBytes(dir, NestedBinary(513, 1)), nullptr);
  EXPECT_EQ(ReadBytes(dir, NestedXml(513)), nullptr);
}

TEST(PlistBombs, OrdinaryNestingAndSharedObjectsStillRead) {
  TempDir dir;
  plist_t deep = ReadBytes(dir, NestedBinary(511, 1));
  EXPECT_EQ(plist_get_node_type(deep), PLIST_ARRAY);
  plist_free(deep);
  deep = ReadBytes(dir, NestedXml(512));
  EXPECT_EQ(plist_get_node_type(deep), PLIST_ARRAY);
  plist_free(deep);
  plist_t shared = ReadBytes(dir, NestedBinary(16, 2));  // 2^17 - 1 nodes
  EXPECT_EQ(plist_get_node_type(shared), PLIST_ARRAY);
  plist_free(shared);
}

TEST(PlistBombs, ABombAsInfoPlistLeavesTheBackupListed) {
  TempDir root;
  const std::string backup =
      BackupBuilder(IndexKind::ManifestDb).RawInfoPlist(NestedBinary(40, 2)).Write(root.Path() + "backup");
  BackupDevice* list = GetBackupDeviceListAt(backup.c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->deviceName, nullptr);
  yhtest::FreeDeviceList(list);
}

TEST(PlistBombs, ABombAsSafariHistoryChangesOnlyItsOwnAnswer) {
  yhtest::fault::FaultBench bench(IndexKind::Mbdb);
  const std::string history = bench.Stored("HomeDomain", "Library/Safari/History.plist");
  const yhtest::fault::Answers answers = bench.Run("History.plist bomb", {ContentSafariHistory}, [&] {
    yhtest::WriteFile(history, NestedBinary(40, 2));
  });
  // The bookmarks database still answers.
  EXPECT_NE(answers.rounds[0][ContentSafariHistory].find("\"type\":\"bookmark\""), std::string::npos);
  bench.Run("History.plist nested too deep", {ContentSafariHistory},
            [&] { yhtest::WriteFile(history, NestedXml(1000000)); });
}

}  // namespace
