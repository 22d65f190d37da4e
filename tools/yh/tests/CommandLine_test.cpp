#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "YhRun.h"

namespace yhtool {
namespace {

TEST(YhCommandLine, VersionIsPrintedWithExitCodeZero) {
  const YhResult run = Yh({"--version"});
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(run.out, std::string("yh ") + YH_VERSION + "\nlibYH " + YH_VERSION + "\n");
  EXPECT_EQ(run.err, "");
}

TEST(YhCommandLine, EveryCommandHasItsHelp) {
  const struct {
    std::vector<std::string> args;
    std::string usage;
  } cases[] = {
      {{"--help"}, "Usage: yh [OPTIONS] SUBCOMMAND"},
      {{"list", "--help"}, "Usage: yh list [OPTIONS]"},
      {{"show", "--help"}, "Usage: yh show [OPTIONS] BACKUP KIND"},
      {{"export", "--help"}, "Usage: yh export [OPTIONS] BACKUP"},
      {{"show", "-h"}, "Usage: yh show [OPTIONS] BACKUP KIND"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.args.front());
    const YhResult run = Yh(c.args);
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(Contains(run.out, c.usage));
    EXPECT_TRUE(Contains(run.out, "Exit codes: 0 done; 1 nothing found"));
    EXPECT_EQ(run.err, "");
  }
  EXPECT_TRUE(Contains(OutOf(Yh({"show", "--help"})), "--format FORMAT"));
  EXPECT_TRUE(Contains(OutOf(Yh({"export", "--help"})), "--kinds"));
  EXPECT_TRUE(Contains(OutOf(Yh({"--help"})), "camera-photos"));
}

// Each usage error names the fault and prints the usage of its command.
TEST(YhCommandLine, UsageErrorsExitWithTwoAndTheUsage) {
  const struct {
    std::vector<std::string> args;
    std::string message;
    std::string usage;
  } cases[] = {
      {{}, "A subcommand is required", "Usage: yh [OPTIONS] SUBCOMMAND"},
      {{"restore"}, "unknown command \"restore\"", "Usage: yh [OPTIONS] SUBCOMMAND"},
      {{"list", "--format", "xml"}, "unknown format \"xml\" (formats: table, json)", "Usage: yh list"},
      {{"list", "--bogus"}, "--bogus", "Usage: yh list"},
      {{"list", "extra"}, "extra", "Usage: yh list"},
      {{"show"}, "BACKUP is required", "Usage: yh show"},
      {{"show", "x"}, "KIND is required", "Usage: yh show"},
      {{"show", "x", "photos"}, "unknown kind \"photos\"", "Usage: yh show"},
      {{"show", "x", "14"}, "unknown kind \"14\"", "Usage: yh show"},
      {{"show", "x", "-1"}, "-1", "Usage: yh show"},
      {{"show", "x", "calls", "--format", "yaml"},
       "unknown format \"yaml\" (formats: json, xml, csv, table)",
       "Usage: yh show"},
      {{"show", "x", "calls", "--root"}, "--root", "Usage: yh show"},
      {{"show", "x", "calls", "--deleted", "--classic"}, "--classic excludes --deleted", "Usage: yh show"},
      {{"export", "x", "--out", "o", "--classic", "--deleted"}, "--classic excludes --deleted", "Usage: yh export"},
      {{"export", "x"}, "--out is required", "Usage: yh export"},
      {{"export", "--out", "o"}, "BACKUP is required", "Usage: yh export"},
      {{"export", "x", "--out", "o", "--kinds", "calls,sms"}, "unknown kind \"sms\"", "Usage: yh export"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    const YhResult run = Yh(c.args);
    EXPECT_EQ(run.code, 2);
    EXPECT_TRUE(Contains(run.err, c.message));
    EXPECT_TRUE(Contains(run.err, c.usage));
    EXPECT_EQ(run.out, "");
  }
}

TEST(YhCommandLine, KindsAreNamesNumbersOrAll) {
  const YhResult byName = Yh({"show", kOldSample, "notes", "--root", Samples()});
  const YhResult byNumber = Yh({"show", kOldSample, "4", "--root", Samples()});
  EXPECT_EQ(byName.code, 0);
  EXPECT_EQ(byNumber.code, 0);
  EXPECT_EQ(byName.out, byNumber.out);
  const YhResult all =
      Yh({"export", kOldSample, "--out", "/nonexistent/dir/yh", "--kinds", "all,0", "--root", "/nonexistent/root"});
  EXPECT_EQ(all.code, 1) << "accepted as usage, refused for the root";
}

}  // namespace
}  // namespace yhtool
