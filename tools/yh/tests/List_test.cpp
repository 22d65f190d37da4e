#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "DefaultLocation.h"
#include "YhRun.h"
#include "support/BackupBuilder.h"

namespace yhtool {
namespace {

const char kTable[] =
    "folder                                    device          product     version  serial        last backup"
    "          encrypted  index\n"
    "00008101-001C24E83A91401E                 Ada’s iPhone    iPhone13,2  15.8     G6TDX2MLPQ    2023-09-12 08:41:17"
    "  no         Manifest.db\n"
    "5d2f3b8e9a1c4d7f6e0b2a9c8d7e6f5a4b3c2d1e  Grace’s iPhone  iPhone5,2   7.1.2    DNPK8QXZF8H2  2014-07-04 18:22:05"
    "  no         Manifest.mbdb\n";

TEST(YhList, TableHasOneLinePerBackup) {
  const YhResult run = Yh({"list", "--root", Samples()});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.out, kTable);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(OutOf(Yh({"list", "--root", Samples(), "--format", "table"})), kTable);
}

TEST(YhList, JsonHoldsEveryDeviceField) {
  const YhResult run = Yh({"list", "--root", Samples(), "--format", "json"});
  ASSERT_EQ(run.code, 0);
  const nlohmann::ordered_json devices = nlohmann::ordered_json::parse(run.out);
  ASSERT_EQ(devices.size(), 2u);
  const nlohmann::ordered_json expected = {{"folder", std::string(kOldSample)},
                                           {"path", Samples() + "/" + kOldSample + "/"},
                                           {"deviceName", "Grace’s iPhone"},
                                           {"productName", "iPhone 5"},
                                           {"productType", "iPhone5,2"},
                                           {"productVersion", "7.1.2"},
                                           {"serialNumber", "DNPK8QXZF8H2"},
                                           {"uniqueIdentifier", "5D2F3B8E9A1C4D7F6E0B2A9C8D7E6F5A4B3C2D1E"},
                                           {"lastBackupDate", "2014-07-04 18:22:05"},
                                           {"encrypted", false},
                                           {"index", "Manifest.mbdb"}};
  EXPECT_EQ(devices[1], expected);
  EXPECT_EQ(devices[0]["index"], "Manifest.db");
  EXPECT_EQ(devices[0]["deviceName"], "Ada’s iPhone");
}

TEST(YhList, DatesFollowTheLocalTimeZone) {
  const YhResult run = Yh({"list", "--root", Samples()}, {"TZ=America/New_York"});
  EXPECT_EQ(run.code, 0);
  EXPECT_TRUE(Contains(run.out, "2014-07-04 14:22:05"));
}

TEST(YhList, WithoutRootTheDefaultLocationIsListed) {
  const YhResult run = Yh({"list"}, SamplesByDefault());
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.out, kTable);
}

TEST(YhList, EncryptedBackupsAreMarked) {
  yhtest::TempDir dir;
  yhtest::BackupBuilder(yhtest::IndexKind::ManifestDb)
      .InfoString("Device Name", "Locked")
      .ManifestBool("IsEncrypted", true)
      .Write(dir.Path() + "locked");
  const YhResult run = Yh({"list", "--root", dir.Path(), "--format", "json"});
  ASSERT_EQ(run.code, 0);
  EXPECT_EQ(nlohmann::json::parse(run.out)[0]["encrypted"], true);
  EXPECT_TRUE(Contains(OutOf(Yh({"list", "--root", dir.Path()})), "Locked  "));
}

TEST(YhList, NothingFoundExitsWithOne) {
  yhtest::TempDir empty;
  const YhResult none = Yh({"list", "--root", empty.Path()});
  EXPECT_EQ(none.code, 1);
  EXPECT_TRUE(Contains(none.err, "yh: no backups found in " + empty.Path() + " ("));
  EXPECT_EQ(none.out, "");

  const YhResult missing = Yh({"list", "--root", empty.Path() + "missing"});
  EXPECT_EQ(missing.code, 1);
  EXPECT_EQ(missing.err, "yh: " + empty.Path() + "missing: no such folder\n");

  const DefaultLocation location = DefaultLocationIn(empty.Path());
  const YhResult noDefault = Yh({"list"}, location.env);
  EXPECT_EQ(noDefault.code, 1);
  EXPECT_TRUE(Contains(noDefault.err, "yh: no backups found; looked in " + location.folders.front() + " (missing)"));
  EXPECT_TRUE(Contains(noDefault.err, "--root DIR\n"));
}

}  // namespace
}  // namespace yhtool
