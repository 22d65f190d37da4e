#ifndef YH_TOOL_REPORT_REPORTWRITER_H
#define YH_TOOL_REPORT_REPORTWRITER_H

#include <string>
#include <vector>

#include "Kinds.h"
#include "Library.h"
#include "MediaCopier.h"
#include "OutputFolder.h"
#include "PlistJson.h"
#include "Progress.h"

namespace yh {

// Writes a report that a browser opens from disk: the page (index.html and
// assets/), the answers as data scripts in data/ and copies of the media
// files in media/<kind>/, into a folder that must be new or empty, so that
// the page's fixed names are its own.
class ReportWriter {
 public:
  // `copies`: where answers may name files besides the backup ("" for none).
  ReportWriter(const Library& library, BackupDevice& device, const std::string& copies, const std::string& out);

  // Writes data/<kind>.js; messages also write one data/thread-N.js per
  // conversation.
  KindExport Add(const Kind& kind);

  // Writes data/overview.js: the device and what each kind added.
  void Finish();

 private:
  void WriteData(const std::string& name, const Json& data);
  Json Threads(const Kind& kind, Json chats);

  const Library& library_;
  BackupDevice& device_;
  OutputFolder out_;
  OutputFolder data_;
  Progress progress_;
  MediaCopier media_;
  Json kinds_ = Json::array();
};

}  // namespace yh

#endif
