#ifndef YH_TOOL_COMMANDS_H
#define YH_TOOL_COMMANDS_H

#include <ostream>
#include <string>
#include <vector>

#include "Render.h"

namespace yh {

struct ListOptions {
  std::string root;
  Format format = Format::Table;
  bool classic = false;  // the described service instead of the current one
};

struct ShowOptions {
  std::string backup;
  std::string kind;
  std::string root;
  Format format = Format::Json;
  std::string passwordFile;  // of an encrypted backup
  bool classic = false;      // the described service instead of the current one
  bool deleted = false;      // the records the owner deleted instead of the live ones
};

struct ExportOptions {
  std::string backup;
  std::string out;
  std::vector<std::string> kinds{kAllKinds};
  std::string root;
  std::string passwordFile;  // of an encrypted backup
  bool classic = false;      // the described service instead of the current one
  bool resume = false;       // finish an interrupted run in `out`
  bool deleted = false;      // the records the owner deleted too
};

struct DecryptOptions {
  std::string backup;
  std::string out;
  std::string root;
  std::string passwordFile;
  bool classic = false;  // the described service instead of the current one
};

struct CarveOptions {
  std::string database;
  std::string wal;      // "" for the -wal beside the database, when present
  std::string journal;  // "" for the -journal beside the database, when present
  Format format = Format::Json;
  bool all = false;  // the live rows too
};

// yh report takes what yh export takes.
using ReportOptions = ExportOptions;

// Each writes its result to `out` and returns the exit code; a command that
// cannot be done throws Failure.
int RunList(const ListOptions& options, std::ostream& out);
int RunShow(const ShowOptions& options, std::ostream& out);
int RunExport(const ExportOptions& options, std::ostream& out);
int RunDecrypt(const DecryptOptions& options, std::ostream& out);
int RunReport(const ReportOptions& options, std::ostream& out);
int RunCarve(const CarveOptions& options, std::ostream& out);

}  // namespace yh

#endif
