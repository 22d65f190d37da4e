#ifndef YH_TOOL_REPORT_REPORTWRITER_H
#define YH_TOOL_REPORT_REPORTWRITER_H

#include <string>
#include <string_view>

#include "Conversations.h"
#include "Kinds.h"
#include "Library.h"
#include "MediaCopier.h"
#include "PlistJson.h"
#include "Previews.h"
#include "Progress.h"
#include "UnfinishedMark.h"

namespace yh {

// Writes a report that a browser opens from disk: the page (index.html and
// assets/), the answers as data scripts in data/ and copies of the media
// files in media/<kind>/ with previews of those a browser cannot show in
// previews/<kind>/, into a folder of its own. data/overview.js comes last: a
// page without it says that the report is incomplete. With `deleted`, the
// records the owner deleted are among the live ones, each with its
// deletion's keys: a conversation's recovered messages in its thread.
class ReportWriter {
 public:
  // `copies`: where answers may name files besides the backup ("" for none).
  ReportWriter(const Library& library, BackupDevice& device, const std::string& copies, UnfinishedMark& mark,
               bool deleted);

  // Writes data/<kind>.js; messages also write one data/thread-N.js per
  // conversation and data/message-texts.js, the text and date of every
  // message, for the search. The overview gets the kind's counts: its
  // records, files, its live messages (null for kinds without
  // conversations) and, when they were asked for, the deleted records
  // (messages) added.
  KindExport Add(const Kind& kind);

  // Writes data/overview.js: the device and what each kind added.
  void Finish();

 private:
  void AddRecords(const Kind& kind, KindExport& result);
  Conversations::Counts AddConversations(const Kind& kind, KindExport& result);
  void WriteFile(OutputFolder& folder, const std::string& name, std::string_view bytes);
  void WriteData(const std::string& name, const Json& data);

  const Library& library_;
  BackupDevice& device_;
  OutputFolder& out_;
  bool resumed_;
  bool deleted_;
  OutputFolder data_;
  Progress progress_;
  MediaCopier media_;
  Previews previews_;
  Json kinds_ = Json::array();
};

}  // namespace yh

#endif
