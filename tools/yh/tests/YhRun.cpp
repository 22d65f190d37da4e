#include "YhRun.h"

#include <fstream>
#include <regex>
#include <sstream>

#include "RunProcess.h"
#include "platform/Environment.h"

namespace yhtool {
namespace {

// The caller's environment with `changes` ("NAME=value") put in.
std::vector<std::string> Environment(const std::vector<std::string>& changes) {
  std::vector<std::string> env = CurrentEnvironment();
  for (const std::string& change : changes) {
    const std::string name = change.substr(0, change.find('=') + 1);
    for (auto it = env.begin(); it != env.end();) it = it->compare(0, name.size(), name) == 0 ? env.erase(it) : it + 1;
    env.push_back(change);
  }
  return env;
}

}  // namespace

const char kOldSample[] = "5d2f3b8e9a1c4d7f6e0b2a9c8d7e6f5a4b3c2d1e";
const char kNewSample[] = "00008101-001C24E83A91401E";

YhResult Yh(const std::vector<std::string>& args, const std::vector<std::string>& env) {
  std::vector<std::string> argv{YH_COMMAND};
  argv.insert(argv.end(), args.begin(), args.end());
  std::vector<std::string> changes{"TZ=UTC"};
  changes.insert(changes.end(), env.begin(), env.end());
  return RunProcess(argv, Environment(changes));
}

std::string OutOf(const YhResult& run) {
  EXPECT_EQ(run.code, 0) << run.err;
  return run.out;
}

std::string Samples() { return YH_SAMPLE_BACKUPS; }

namespace {

yh::Plist AnswerOf(const std::string& path, int contentType, bool classic, bool deleted) {
  platform::SetVariable("TZ", "UTC");
  const yh::Library library(classic);
  const yh::DeviceList list = library.List(path);
  if (list.Devices().size() != 1 || !library.Analyze(*list.Devices().front())) return yh::Plist();
  BackupDevice& device = *list.Devices().front();
  return deleted ? library.Deleted(device, contentType) : library.Content(device, contentType);
}

}  // namespace

yh::Plist Answer(const std::string& path, int contentType, bool classic) {
  return AnswerOf(path, contentType, classic, false);
}

yh::Plist DeletedAnswer(const std::string& path, int contentType) { return AnswerOf(path, contentType, false, true); }

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

::testing::AssertionResult Contains(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos)
    return ::testing::AssertionSuccess() << "\"" << text << "\" holds \"" << part << "\"";
  return ::testing::AssertionFailure() << "\"" << text << "\" does not hold \"" << part << "\"";
}

std::string WithoutPrivateFolders(const std::string& text) {
  static const std::regex kPrivate(R"([^"\s,<>]*libYH-[A-Za-z0-9]+[/\\])");
  return std::regex_replace(text, kPrivate, "<private>/");
}

nlohmann::ordered_json WithoutCopyPaths(nlohmann::ordered_json json) {
  if (json.is_string()) return WithoutPrivateFolders(json.get<std::string>());
  if (json.is_object()) {
    json.erase("exported_path");
    json.erase("preview_path");
  }
  if (json.is_structured()) {
    for (auto& item : json) item = WithoutCopyPaths(std::move(item));
  }
  return json;
}

nlohmann::ordered_json ReportData(const std::string& path, const std::string& name) {
  const std::string text = ReadFile(path);
  const std::string head = "yhData(\"" + name + "\", ";
  EXPECT_EQ(text.compare(0, head.size(), head), 0) << text.substr(0, 80);
  if (text.size() < head.size() + 3) return nullptr;
  EXPECT_EQ(text.substr(text.size() - 3), ");\n");
  return nlohmann::ordered_json::parse(text.substr(head.size(), text.size() - head.size() - 3));
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace yhtool
