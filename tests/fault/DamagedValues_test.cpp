#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fault/Damage.h"
#include "fault/FaultBench.h"
#include "fault/SampleBackup.h"

// Columns holding what no device writes there: BLOBs, huge texts, texts with
// zero bytes or broken UTF-8, and numbers (dates, durations, counts, ids)
// that are negative, huge or not numbers at all.
namespace {

using yhtest::IndexKind;
using yhtest::fault::FaultBench;
namespace sample = yhtest::sample;

const std::vector<std::string> kOddValues = {
    "NULL",
    "X'00FF00FE'",                     // a BLOB with zero bytes
    "X''",                             // an empty BLOB
    "'Hi' || char(0) || 'there'",      // a text with a zero byte
    "CAST(X'C3FFFE80C0AF' AS TEXT)",   // invalid UTF-8
    "''",
    "-1",
    "-2147483649",
    "2147483648",
    "9223372036854775807",
    "-9223372036854775808",
    "1e308",
    "-1.5e300",
    "0.5",
    "'abc'",
    "' 42xyz'",
    "'0x7fffffff'",
    "'%s%n%x'",
};

// 10 MB of text, made by SQLite itself.
const char kHugeText[] = "replace(hex(zeroblob(5000000)), '0', 'x')";

class DamagedValues : public ::testing::TestWithParam<IndexKind> {};

TEST_P(DamagedValues, OddColumnValuesChangeOnlyTheirOwnAnswers) {
  FaultBench bench(GetParam());
  for (const sample::Database& database : sample::Databases(GetParam())) {
    const std::string stored = bench.Stored(database.domain, database.path);
    bench.Run(database.path + " with odd values", database.feeds,
              [&] { yhtest::fault::Rewrite(stored, yhtest::fault::WithValues(database, kOddValues)); });
  }
}

TEST_P(DamagedValues, HugeTextsChangeOnlyTheirOwnAnswers) {
  FaultBench bench(GetParam());
  for (const sample::Database& database : sample::Databases(GetParam())) {
    const std::string stored = bench.Stored(database.domain, database.path);
    bench.Run(database.path + " with 10 MB texts", database.feeds,
              [&] { yhtest::fault::Rewrite(stored, yhtest::fault::WithValueInOneColumn(database, kHugeText)); });
  }
}

// A text is read up to its first zero byte, and broken UTF-8 is handed on
// as it is: neither ends the answer or the rows after it.
TEST_P(DamagedValues, MessageTextsEndAtAZeroByteAndKeepBrokenUtf8) {
  FaultBench bench(GetParam());
  sample::Database sms;
  for (const sample::Database& database : sample::Databases(GetParam())) {
    if (database.path == "Library/SMS/sms.db") sms = database;
  }
  sample::Table& messages = sms.tables[2];
  ASSERT_EQ(messages.name, "message");
  messages.rows[0][0] = "'Hi' || char(0) || 'there'";
  messages.rows[1][0] = "CAST(X'4F4BC3FF' AS TEXT)";
  const yhtest::fault::Answers answers =
      bench.Run("message texts", {ContentSms}, [&] {
        yhtest::fault::Rewrite(bench.Stored(sms.domain, sms.path), sms);
      });
  ASSERT_TRUE(answers.found);
  const std::string& dump = answers.rounds[0][ContentSms];
  EXPECT_NE(dump.find("\"text\":\"Hi\","), std::string::npos) << dump;
  EXPECT_NE(dump.find("\"text\":\"OK\xC3\xFF\","), std::string::npos) << dump;
  EXPECT_NE(dump.find("\"text\":\"See you\","), std::string::npos) << dump;
}

INSTANTIATE_TEST_SUITE_P(BothIndexKinds, DamagedValues, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return yhtest::fault::IndexName(info.param); });

}  // namespace
