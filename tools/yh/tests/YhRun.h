#ifndef YH_TOOL_TESTS_YHRUN_H
#define YH_TOOL_TESTS_YHRUN_H

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Library.h"

namespace yhtool {

// What one run of the yh command gave.
struct YhResult {
  int code = -1;
  std::string out;
  std::string err;
};

// Runs yh with `args` under TZ=UTC; `env` adds or replaces "NAME=value"
// entries of the environment.
YhResult Yh(const std::vector<std::string>& args, const std::vector<std::string>& env = {});

// The output of a run that has to succeed (exit code 0); a failure shows
// the code and what yh wrote to its error stream.
std::string OutOf(const YhResult& run);

// The folder that holds the two sample backups, and their folder names.
std::string Samples();
extern const char kOldSample[];  // Manifest.mbdb
extern const char kNewSample[];  // Manifest.db

// The library's answer for one kind of the backup at `path`, in UTC, as yh
// gets it.
yh::Plist Answer(const std::string& path, int contentType, bool classic = false);
// The current service's deleted records of one kind, the same way.
yh::Plist DeletedAnswer(const std::string& path, int contentType);

// The bytes of a file; "" when it cannot be read.
std::string ReadFile(const std::string& path);

// Succeeds when `text` holds `part`; a failure shows both.
::testing::AssertionResult Contains(const std::string& text, const std::string& part);

// A text with every path into a record's private folder (the pictures the
// library writes out there, a new folder each run) cut to "<private>/".
std::string WithoutPrivateFolders(const std::string& text);

// A JSON answer as yh wrote it into an export or a report without the paths
// it adds ("exported_path", "preview_path"), at any depth, and its texts
// WithoutPrivateFolders: what yh show gives, so cut.
nlohmann::ordered_json WithoutCopyPaths(nlohmann::ordered_json json);

// The data a report's data script (data/NAME.js) hands to the page under
// `name`; a failure when the file is no such script.
nlohmann::ordered_json ReportData(const std::string& path, const std::string& name);

// Lines of a text, without their line ends.
std::vector<std::string> Lines(const std::string& text);

}  // namespace yhtool

#endif
