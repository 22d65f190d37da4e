#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "common/PlistSafety.h"
#include "fault/FaultBench.h"
#include "fault/SampleBackup.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/TreeSnapshot.h"

// Property lists whose strings hold zero bytes. libplist reads them with
// their full length, then aborts when asked for the text (found by the
// device information fuzzer) and reads past the text when copying or
// writing such a node; the library ends each such string at its zero byte.
// A binary dictionary key in UTF-16 with a zero unit makes libplist abort
// when the key is read (found by the Safari history fuzzer); such a list is
// unreadable.
namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;
using yhtest::TempDir;
using yhtest::fault::FaultBench;

const char kXmlHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">";

std::string WithZero(const std::string& before, const std::string& after) { return before + '\0' + after; }

TEST(DamagedPlists, AZeroByteInAnInfoPlistStringEndsTheText) {
  TempDir root;
  const std::string info = std::string(kXmlHead) + "<dict><key>Device Name</key><string>" +
                           WithZero("Pho", "ne") + "</string><key>Product Version</key><string>" +
                           WithZero("7.1", "2") + "</string></dict></plist>";
  const std::string backup = BackupBuilder(IndexKind::ManifestDb).RawInfoPlist(info).Write(root.Path() + "backup");
  BackupDevice* list = GetBackupDeviceListAt(backup.c_str());
  ASSERT_NE(list, nullptr);
  ASSERT_NE(list->deviceName, nullptr);
  EXPECT_STREQ(list->deviceName, "Pho");
  EXPECT_STREQ(list->productVersion, "7.1");
  yhtest::FreeDeviceList(list);
}

TEST(DamagedPlists, AZeroByteInAManifestPlistStringEndsTheText) {
  TempDir root;
  const std::string manifest = std::string(kXmlHead) +
                               "<dict><key>Lockdown</key><dict><key>SerialNumber</key><string>" +
                               WithZero("F2L", "X") + "</string></dict></dict></plist>";
  const std::string backup =
      BackupBuilder(IndexKind::Mbdb).RawInfoPlist("").RawManifestPlist(manifest).Write(root.Path() + "backup");
  BackupDevice* list = GetBackupDeviceListAt(backup.c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_STREQ(list->serialNumber, "F2L");
  yhtest::FreeDeviceList(list);
}

// A binary list from its objects' bytes (one-byte references and offsets),
// the first object the root.
std::string BinaryList(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string offsets;
  for (const std::string& object : objects) {
    offsets += static_cast<char>(bytes.size());
    bytes += object;
  }
  const size_t table = bytes.size();
  bytes += offsets + std::string(6, '\0') + "\x01\x01" + std::string(7, '\0');
  bytes += static_cast<char>(objects.size());
  bytes += std::string(15, '\0');
  bytes += static_cast<char>(table);
  return bytes;
}

// String objects of fewer than 15 characters, ASCII or UTF-16.
std::string Ascii(const std::string& text) { return static_cast<char>(0x50 | text.size()) + text; }
std::string Utf16(const std::string& text) {
  std::string object(1, static_cast<char>(0x60 | text.size()));
  for (char c : text) object += std::string(1, '\0') + c;
  return object;
}

TEST(DamagedPlists, AZeroUnitInAUtf16KeyMakesTheListUnreadable) {
  TempDir root;
  const std::string fine = BackupBuilder(IndexKind::ManifestDb)
                               .RawInfoPlist(BinaryList({"\xD1\x01\x02", Utf16("Device Name"), Ascii("x")}))
                               .Write(root.Path() + "fine");
  BackupDevice* list = GetBackupDeviceListAt(fine.c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_STREQ(list->deviceName, "x");
  yhtest::FreeDeviceList(list);

  const std::string damagedInfo = BinaryList({"\xD1\x01\x02", Utf16(WithZero("Device", " Name")), Ascii("x")});
  const std::string damaged =
      BackupBuilder(IndexKind::ManifestDb).RawInfoPlist(damagedInfo).Write(root.Path() + "damaged");
  list = GetBackupDeviceListAt(damaged.c_str());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->deviceName, nullptr);
  yhtest::FreeDeviceList(list);
}

// The history reader walks each entry's keys.
TEST(DamagedPlists, AZeroUnitInAUtf16SafariHistoryKeyChangesOnlyItsOwnAnswer) {
  FaultBench bench(IndexKind::Mbdb);
  const std::string history = BinaryList({"\xD1\x01\x02", std::string("\x5F\x10\x0F") + "WebHistoryDates",
                                          "\xA1\x03", "\xD2\x04\x05\x06\x07", Ascii(""),
                                          Utf16(WithZero("ti", "tle")), Ascii("http://a/"), Ascii("T")});
  const yhtest::fault::Answers answers = bench.Run("History.plist key with a zero unit", {ContentSafariHistory}, [&] {
    yhtest::WriteFile(bench.Stored("HomeDomain", "Library/Safari/History.plist"), history);
  });
  ASSERT_TRUE(answers.found);
  const std::string& dump = answers.rounds[0][ContentSafariHistory];
  EXPECT_EQ(dump.find("http://a/"), std::string::npos) << dump;
  EXPECT_NE(dump.find("\"type\":\"bookmark\""), std::string::npos) << dump;
}

// Addresses and titles are copied into the answer: a copy of the damaged
// node would make the host abort or read past the text.
TEST(DamagedPlists, AZeroByteInASafariHistoryStringEndsTheText) {
  FaultBench bench(IndexKind::Mbdb);
  const std::string history =
      std::string(kXmlHead) + "<dict><key>WebHistoryDates</key><array><dict><key></key><string>" +
      WithZero("http://a.example/", "hidden") + "</string><key>title</key><string>" + WithZero("Ti", "tle") +
      "</string><key>lastVisitedDate</key><string>" + WithZero("410227200", "9") +
      "</string><key>visitCount</key><array><string>" + WithZero("in", "side") +
      "</string></array></dict></array></dict></plist>";
  const yhtest::fault::Answers answers = bench.Run("History.plist with zero bytes", {ContentSafariHistory}, [&] {
    yhtest::WriteFile(bench.Stored("HomeDomain", "Library/Safari/History.plist"), history);
  });
  ASSERT_TRUE(answers.found);
  const std::string& dump = answers.rounds[0][ContentSafariHistory];
  EXPECT_NE(dump.find("{\"url\":\"http://a.example/\",\"type\":\"history\",\"title\":\"Ti\",\"lastVisitedDate\":"),
            std::string::npos)
      << dump;
  EXPECT_NE(dump.find("\"visitCount\":[\"in\"]"), std::string::npos) << dump;
}

// The same in a binary list, an address written in ASCII and a title in
// UTF-16: only lists with such a string are walked to end them.
TEST(DamagedPlists, AZeroInABinarySafariHistoryStringEndsTheText) {
  FaultBench bench(IndexKind::Mbdb);
  const std::string history = BinaryList({"\xD1\x01\x02", std::string("\x5F\x10\x0F") + "WebHistoryDates",
                                          "\xA1\x03", "\xD2\x04\x05\x06\x07", Ascii(""),
                                          Ascii("title"), Ascii(WithZero("http://a/", "x")), Utf16(WithZero("Ti", "tle"))});
  ASSERT_TRUE(MayHoldZeroInString(history.data(), history.size()));
  const yhtest::fault::Answers answers = bench.Run("binary History.plist with zeros", {ContentSafariHistory}, [&] {
    yhtest::WriteFile(bench.Stored("HomeDomain", "Library/Safari/History.plist"), history);
  });
  ASSERT_TRUE(answers.found);
  const std::string& dump = answers.rounds[0][ContentSafariHistory];
  EXPECT_NE(dump.find("{\"url\":\"http://a/\",\"type\":\"history\",\"title\":\"Ti\""), std::string::npos) << dump;
}

TEST(DamagedPlists, OnlyABinaryListWithoutZerosInItsStringsNeedsNoWalk) {
  const auto mayHold = [](const std::string& bytes) { return MayHoldZeroInString(bytes.data(), bytes.size()); };
  const std::vector<std::string> sound = {"\xD2\x01\x02\x03\x04", Ascii("a"), Utf16("b"), "\x10\x07", "\x23" + std::string(8, '\0')};
  EXPECT_FALSE(mayHold(BinaryList(sound)));
  // A zero in an integer or a date is no string's.
  EXPECT_FALSE(mayHold(BinaryList({"\xA2\x01\x02", "\x10\x00", "\x33" + std::string(8, '\0')})));
  EXPECT_TRUE(mayHold(BinaryList({"\xA1\x01", Ascii(WithZero("a", "b"))})));
  EXPECT_TRUE(mayHold(BinaryList({"\xA1\x01", Utf16(WithZero("a", "b"))})));
  // An object of a type not known here, a string running past the end, a
  // damaged trailer and any XML list are walked.
  EXPECT_TRUE(mayHold(BinaryList({"\xA1\x01", std::string("\x71") + "a"})));
  EXPECT_TRUE(mayHold(BinaryList({"\xA1\x01", std::string("\x5F\x10\x7F") + "abc"})));
  std::string trailer = BinaryList(sound);
  trailer[trailer.size() - 26] = '\x09';
  EXPECT_TRUE(mayHold(trailer));
  EXPECT_TRUE(mayHold(std::string(kXmlHead) + "<string>a</string></plist>"));
}

}  // namespace
