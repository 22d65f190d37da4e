#include "ReportWriter.h"

#include <utility>

#include "AnswerFile.h"
#include "DataScript.h"
#include "DeviceJson.h"
#include "Exporter.h"
#include "FileIo.h"
#include "PageFiles.h"

namespace yh {
namespace {

const char kIndexPage[] = "index.html";

bool HasThreads(const Kind& kind) { return kind.name == "messages" || kind.name == "whatsapp"; }

// The data files of a kind of conversations are named with this before
// "thread-N" and "message-texts": nothing for Messages', the kind's name and
// "-" for WhatsApp's.
std::string ThreadFilePrefix(const Kind& kind) { return kind.name == "messages" ? "" : kind.name + "-"; }

}  // namespace

ReportWriter::ReportWriter(const Library& library, BackupDevice& device, const std::string& copies,
                           UnfinishedMark& mark, bool deleted)
    : library_(library),
      device_(device),
      out_(mark.Folder()),
      resumed_(mark.Resumed()),
      deleted_(deleted),
      data_(out_.Sub("data")),
      media_(Text(device.backupPath), copies, out_, progress_, resumed_),
      previews_(out_, resumed_) {
  media_.SetOnCopy([this](const Kind& kind, plist_t record, const std::string& copy) {
    previews_.Add(kind, record, copy);
  });
  // The page's HTML at the top, the rest of its files in assets/.
  OutputFolder assets = out_.Sub("assets");
  for (const PageFile& file : PageFiles()) {
    WriteFile(file.name == std::string(kIndexPage) ? out_ : assets, file.name, file.bytes);
  }
}

KindExport ReportWriter::Add(const Kind& kind) {
  KindExport result{&kind};
  Json messages;
  size_t recovered = 0;
  if (HasThreads(kind)) {
    const Conversations::Counts counts = AddConversations(kind, result);
    messages = counts.live;
    recovered = counts.deleted;
  } else {
    AddRecords(kind, result);
    recovered = result.deleted.value_or(0);
  }
  kinds_.push_back({{"name", kind.name},
                    {"records", result.records},
                    {"files", result.files},
                    {"skipped", result.skipped},
                    {"missing", result.missing},
                    {"messages", messages}});
  if (deleted_) kinds_.back()["deleted"] = recovered;
  return result;
}

// data/<kind>.js: the live records, then the deleted ones.
void ReportWriter::AddRecords(const Kind& kind, KindExport& result) {
  AnswerFile file(data_, kind.name + ".js", resumed_);
  DataScriptWriter script(file.Stream(), kind.name);
  script.Punctuation("{\"records\":[");
  bool first = true;
  auto add = [&](plist_t record) {
    if (!first) script.Punctuation(",");
    first = false;
    script.Value(ToJson(record));
  };
  RecordsWithCopies(library_, device_, kind, media_, result, Records::Live, add);
  if (deleted_) RecordsWithCopies(library_, device_, kind, media_, result, Records::Deleted, add);
  script.Punctuation("]}");
  script.Finish();
  file.Keep();
}

Conversations::Counts ReportWriter::AddConversations(const Kind& kind, KindExport& result) {
  const std::string prefix = ThreadFilePrefix(kind);
  AnswerFile texts(data_, prefix + "message-texts.js", resumed_);
  Conversations chats(prefix, texts.Stream(), [this](const std::string& name, const Json& data) { WriteData(name, data); },
                      deleted_);
  if (deleted_) {
    library_.Records(device_, kind.contentType, true, [&](plist_t chat) { chats.ExpectDeleted(ToJson(chat)); });
  }
  RecordsWithCopies(library_, device_, kind, media_, result, Records::Live,
                    [&](plist_t chat) { chats.AddLive(ToJson(chat)); });
  if (deleted_) {
    RecordsWithCopies(library_, device_, kind, media_, result, Records::Deleted,
                      [&](plist_t chat) { chats.AddDeleted(ToJson(chat)); });
  }
  Json data = Json::object();
  data["threads"] = chats.Finish();
  texts.Keep();
  WriteData(kind.name, data);
  return chats.Tally();
}

void ReportWriter::Finish() {
  Json device = DeviceJson(device_);
  device.erase("path");
  WriteData("overview", {{"device", device}, {"kinds", kinds_}});
}

// An interrupted run wrote the same bytes under the same name, whole.
void ReportWriter::WriteFile(OutputFolder& folder, const std::string& name, std::string_view bytes) {
  const std::string own = folder.Reserve(name);
  if (resumed_ && folder.Holds(own)) return;
  OutputFolder::NewFile file = folder.Create(own);
  WriteAll(file.Fd(), bytes, file.Path());
  file.Keep();
}

void ReportWriter::WriteData(const std::string& name, const Json& data) {
  WriteFile(data_, name + ".js", DataScript(name, data));
}

}  // namespace yh
