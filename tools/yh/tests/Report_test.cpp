#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>

#include "Conversations.h"
#include "Kinds.h"
#include "PageFiles.h"
#include "UnfinishedMark.h"
#include "YhRun.h"
#include "support/BackupBuilder.h"
#include "support/TreeSnapshot.h"

namespace yhtool {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

const char* const kSamples[] = {kOldSample, kNewSample};

// Every file below a folder, relative to it.
std::set<std::string> Files(const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) names.insert(fs::relative(entry.path(), folder).string());
  }
  return names;
}

class YhReport : public ::testing::Test {
 protected:
  YhResult Report(const char* sample, const std::vector<std::string>& more = {}) {
    std::vector<std::string> args{"report", sample, "--root", Samples(), "--out", out_};
    args.insert(args.end(), more.begin(), more.end());
    return Yh(args);
  }

  // As yh show gives it, the paths into its run's private folder cut.
  ordered_json Shown(const char* sample, const std::string& kind) {
    return WithoutCopyPaths(ordered_json::parse(OutOf(Yh({"show", sample, kind, "--root", Samples()}))));
  }

  yhtest::TempDir dir_;
  const std::string out_ = dir_.Path() + "report";
};

TEST_F(YhReport, WritesThePageAndEachKindsAnswerAsData) {
  for (const char* sample : kSamples) {
    SCOPED_TRACE(sample);
    fs::remove_all(out_);
    const std::string backup = Samples() + "/" + sample;
    const std::string before = yhtest::SnapshotTree(backup);
    const YhResult run = Report(sample);
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(Contains(run.out, "/report/index.html\n"));
    EXPECT_EQ(yhtest::SnapshotTree(backup), before) << "the backup is left as it was";

    for (const yh::PageFile& file : yh::PageFiles()) {
      const std::string name = file.name == std::string("index.html") ? "index.html" : std::string("assets/") + file.name;
      EXPECT_EQ(ReadFile(out_ + "/" + name), file.bytes) << name;
    }
    for (const yh::Kind& kind : yh::Kinds()) {
      SCOPED_TRACE(kind.name);
      const ordered_json data = ReportData(out_ + "/data/" + kind.name + ".js", kind.name);
      ordered_json shown = Shown(sample, kind.name);
      if (shown.is_null()) shown = ordered_json::array();
      if (kind.name != "messages" && kind.name != "whatsapp") {
        // The answer, each record that names a file with the path of its copy
        // (and of its preview).
        for (const ordered_json& record : data["records"]) {
          if (kind.IsMedia()) {
            EXPECT_EQ(record.at("exported_path").get<std::string>().rfind("media/" + kind.name + "/", 0), 0U);
          }
        }
        EXPECT_EQ(WithoutCopyPaths(data["records"]), shown);
        continue;
      }
      const std::string prefix = kind.name == "messages" ? "thread-" : "whatsapp-thread-";
      ASSERT_EQ(data["threads"].size(), shown.size());
      for (size_t i = 0; i < shown.size(); ++i) {
        const ordered_json& thread = data["threads"][i];
        const ordered_json messages = shown[i].value("message", ordered_json::array());
        EXPECT_EQ(thread["data"], prefix + std::to_string(i + 1));
        EXPECT_EQ(thread["count"], messages.size());
        EXPECT_EQ(WithoutCopyPaths(thread["last"]), messages.empty() ? ordered_json() : messages.back());
        EXPECT_EQ(thread["another"], shown[i]["another"]);
        EXPECT_FALSE(thread.contains("message"));
        EXPECT_EQ(WithoutCopyPaths(ReportData(out_ + "/data/" + prefix + std::to_string(i + 1) + ".js", thread["data"])),
                  shown[i]);
      }
    }
  }
}

TEST_F(YhReport, CopiesTheMediaAsTheExportDoesAndNamesEachCopy) {
  const YhResult run = Report(kNewSample);
  ASSERT_EQ(run.code, 0) << run.err;
  const std::string exported = dir_.Path() + "export";
  ASSERT_EQ(Yh({"export", kNewSample, "--root", Samples(), "--out", exported}).code, 0);
  EXPECT_EQ(Files(out_ + "/media"), Files(exported + "/media"));
  for (const std::string kind : {"contacts", "attachments", "recordings", "camera-photos", "other-photos"}) {
    const ordered_json data = ReportData(out_ + "/data/" + kind + ".js", kind);
    ASSERT_FALSE(data["records"].empty()) << kind;
    for (const ordered_json& record : data["records"]) {
      const std::string copy = record["exported_path"];
      EXPECT_EQ(ReadFile(out_ + "/" + copy), ReadFile(exported + "/" + copy)) << copy;
    }
  }
}

TEST_F(YhReport, TellsTheDeviceAndWhatEachKindAdded) {
  ASSERT_EQ(Report(kNewSample).code, 0);
  const ordered_json overview = ReportData(out_ + "/data/overview.js", "overview");
  EXPECT_EQ(overview["device"]["deviceName"], "Ada’s iPhone");
  EXPECT_EQ(overview["device"]["productVersion"], "15.8");
  EXPECT_EQ(overview["device"]["lastBackupDate"], "2023-09-12 08:41:17");
  EXPECT_FALSE(overview["device"].contains("path"));
  ASSERT_EQ(overview["kinds"].size(), yh::Kinds().size());
  EXPECT_EQ(overview["kinds"][2],
            ordered_json::parse(R"({"name":"messages","records":2,"files":0,"skipped":0,"missing":0,"messages":5})"));
  EXPECT_EQ(overview["kinds"][9],
            ordered_json::parse(R"({"name":"camera-photos","records":3,"files":3,"skipped":0,"missing":0,"messages":null})"));
}

TEST_F(YhReport, WritesOnlyTheKindsAskedFor) {
  ASSERT_EQ(Report(kOldSample, {"--kinds", "calls,9"}).code, 0);
  std::set<std::string> data;
  for (const auto& entry : fs::directory_iterator(out_ + "/data")) data.insert(entry.path().filename().string());
  EXPECT_EQ(data, (std::set<std::string>{"calls.js", "camera-photos.js", "overview.js"}));
  EXPECT_FALSE(fs::exists(out_ + "/" + yh::UnfinishedMark::kName)) << "a complete report has no mark";
  EXPECT_EQ(ReportData(out_ + "/data/overview.js", "overview")["kinds"].size(), 2U);
}

TEST_F(YhReport, NeedsAFolderOfItsOwn) {
  yhtest::WriteFile(out_ + "/notes.txt", "mine");
  const YhResult run = Report(kOldSample);
  EXPECT_EQ(run.code, 1);
  EXPECT_EQ(run.err, "yh: --out " + out_ + " is not empty and holds no interrupted report; give a new or empty "
                    "folder (--resume only finishes an interrupted report)\n");
  EXPECT_EQ(Files(out_), (std::set<std::string>{"notes.txt"}));
}

// The text and date of each message, conversation by conversation, for the page's search.
TEST_F(YhReport, WritesEveryMessagesTextForTheSearch) {
  ASSERT_EQ(Report(kNewSample).code, 0);
  const ordered_json texts = ReportData(out_ + "/data/message-texts.js", "message-texts");
  const ordered_json shown = Shown(kNewSample, "messages");
  ASSERT_EQ(texts.size(), shown.size());
  for (size_t i = 0; i < shown.size(); ++i) {
    ASSERT_EQ(texts[i].size(), shown[i]["message"].size());
    for (size_t j = 0; j < texts[i].size(); ++j) {
      EXPECT_EQ(texts[i][j], ordered_json::array({shown[i]["message"][j]["text"], shown[i]["message"][j]["date"]}));
    }
  }
}

// Recovered records come after the live ones of a table; recovered
// messages go into their conversation's thread in date order, or make a
// conversation of their own; the overview counts them.
TEST_F(YhReport, DeletedRecordsAreAmongTheLiveOnesAndCounted) {
  ASSERT_EQ(Report(kNewSample, {"--deleted"}).code, 0);
  const auto shownDeleted = [](const std::string& kind) {
    const ordered_json shown = ordered_json::parse(OutOf(Yh({"show", kNewSample, kind, "--root", Samples(), "--deleted"})));
    return shown.is_null() ? ordered_json::array() : shown;
  };
  for (const yh::Kind& kind : yh::Kinds()) {
    if (kind.name == "messages" || kind.name == "whatsapp") continue;
    SCOPED_TRACE(kind.name);
    ordered_json expected = Shown(kNewSample, kind.name);
    if (expected.is_null()) expected = ordered_json::array();
    for (const ordered_json& record : shownDeleted(kind.name)) expected.push_back(record);
    EXPECT_EQ(WithoutCopyPaths(ReportData(out_ + "/data/" + kind.name + ".js", kind.name)["records"]), expected);
  }
  const ordered_json calls = ReportData(out_ + "/data/calls.js", "calls")["records"];
  ASSERT_EQ(calls.size(), 5u);
  EXPECT_EQ(calls[4]["date"], "2023-09-11 19:04:12");
  EXPECT_TRUE(calls[4].contains("deleted_from"));

  const ordered_json threads = ReportData(out_ + "/data/messages.js", "messages")["threads"];
  ASSERT_EQ(threads.size(), 2u);
  EXPECT_EQ(threads[0]["id"], "+16175550199");
  EXPECT_EQ(threads[0]["count"], 4u);
  EXPECT_EQ(threads[0]["deleted"], 1u);
  EXPECT_EQ(threads[1]["deleted"], 0u);
  const ordered_json mary = ReportData(out_ + "/data/thread-1.js", "thread-1")["message"];
  ASSERT_EQ(mary.size(), 4u);
  const ordered_json recovered = shownDeleted("messages")[0]["message"][0];
  EXPECT_EQ(mary[2], recovered) << "between the messages of 07:32:40 and 07:35:12";
  EXPECT_EQ(mary[1]["date"], "2023-09-11 07:32:40");
  EXPECT_FALSE(mary[1].contains("deleted_from"));
  EXPECT_EQ(ReportData(out_ + "/data/message-texts.js", "message-texts")[0][2],
            ordered_json::array({recovered["text"], recovered["date"]}));

  const ordered_json overview = ReportData(out_ + "/data/overview.js", "overview");
  EXPECT_EQ(overview["kinds"][0]["deleted"], 1u);
  EXPECT_EQ(overview["kinds"][1]["deleted"], 0u);
  EXPECT_EQ(overview["kinds"][2],
            ordered_json::parse(
                R"({"name":"messages","records":2,"files":0,"skipped":0,"missing":0,"messages":5,"deleted":1})"));
}

// A conversation the live answer lacks is one of its own, after the live
// ones; a message without a date comes first. Only the live conversations
// that deleted messages join are held until the deleted ones come.
TEST(YhReportDeleted, MessagesOfAnotherConversationMakeOneOfTheirOwn) {
  const ordered_json live = ordered_json::parse(
      R"([{"id":"a","message":[{"date":"2023-01-01 10:00:00"},{"date":"2023-01-01 12:00:00"}]},"odd",{"id":"c"},{"id":"b"}])");
  const ordered_json deleted = ordered_json::parse(R"([{"id":"a","message":[{"date":"","deleted_from":"wal"},
        {"date":"2023-01-01 12:00:00","deleted_from":"wal"}]},{"id":"unknown","message":[{"date":"x","deleted_from":"freelist"}]},
        {"id":"b","message":[{"date":"2023-01-02 00:00:00","text":"t","deleted_from":"wal"}]}])");
  std::ostringstream texts;
  std::vector<std::string> order;
  ordered_json written = ordered_json::object();
  yh::Conversations chats("p-", texts, [&](const std::string& name, const yh::Json& data) {
    order.push_back(name);
    written[name] = data;
  }, true);
  for (const ordered_json& chat : deleted) chats.ExpectDeleted(chat);
  for (const ordered_json& chat : live) chats.AddLive(chat);
  EXPECT_EQ(order, (std::vector<std::string>{"p-thread-3"}));
  for (const ordered_json& chat : deleted) chats.AddDeleted(chat);
  const ordered_json list = chats.Finish();

  EXPECT_EQ(order, (std::vector<std::string>{"p-thread-3", "p-thread-5", "p-thread-1", "p-thread-4"}));
  EXPECT_EQ(written["p-thread-1"], ordered_json::parse(R"({"id":"a","message":[{"date":"","deleted_from":"wal"},
    {"date":"2023-01-01 10:00:00"},{"date":"2023-01-01 12:00:00"},{"date":"2023-01-01 12:00:00","deleted_from":"wal"}]})"));
  EXPECT_EQ(written["p-thread-4"],
            ordered_json::parse(R"({"id":"b","message":[{"date":"2023-01-02 00:00:00","text":"t","deleted_from":"wal"}]})"));
  EXPECT_EQ(written["p-thread-5"], deleted[1]);
  ASSERT_EQ(list.size(), 4u);
  EXPECT_EQ(list[0]["data"], "p-thread-1");
  EXPECT_EQ(list[0]["count"], 4u);
  EXPECT_EQ(list[0]["deleted"], 2u);
  EXPECT_EQ(list[1], ordered_json::parse(R"({"id":"c","count":0,"deleted":0,"last":null,"data":"p-thread-3"})"));
  EXPECT_EQ(list[2]["last"], written["p-thread-4"]["message"][0]);
  EXPECT_EQ(list[3]["data"], "p-thread-5");
  EXPECT_EQ(texts.str(), "yhData(\"p-message-texts\", [[[\"\",\"\"],[\"\",\"2023-01-01 10:00:00\"],"
                         "[\"\",\"2023-01-01 12:00:00\"],[\"\",\"2023-01-01 12:00:00\"]],[],[],"
                         "[[\"t\",\"2023-01-02 00:00:00\"]],[[\"\",\"x\"]]]);\n");
  EXPECT_EQ(chats.Tally().live, 2u);
  EXPECT_EQ(chats.Tally().deleted, 4u);
}

TEST_F(YhReport, NeverWritesIntoTheBackup) {
  const std::string backup = Samples() + "/" + kOldSample;
  const std::string before = yhtest::SnapshotTree(backup);
  const YhResult run = Yh({"report", backup, "--out", backup + "/report"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "lies inside the backup"));
  EXPECT_EQ(yhtest::SnapshotTree(backup), before);
}

}  // namespace
}  // namespace yhtool
