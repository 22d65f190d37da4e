#include "ReportWriter.h"

#include <filesystem>
#include <utility>

#include "DataScript.h"
#include "DeviceJson.h"
#include "Failure.h"
#include "FileIo.h"
#include "PageFiles.h"
#include "Render.h"
#include "TerminalText.h"

namespace yh {
namespace {

const char kIndexPage[] = "index.html";

OutputFolder EmptyFolder(const std::string& path) {
  OutputFolder folder = OutputFolder::Open(path);
  std::error_code error;
  if (!std::filesystem::is_empty(path, error) || error) {
    throw Failure("--out " + Printable(path) + " is not an empty folder; a report needs a folder of its own");
  }
  return folder;
}

void WriteFile(const OutputFolder& folder, const std::string& name, std::string_view bytes) {
  const OutputFolder::NewFile file = folder.Create(name);
  WriteAll(file.fd.Get(), std::string(bytes), folder.Path() + "/" + file.name);
}

// The page's HTML at the top, the rest of its files in assets/.
void WritePage(const OutputFolder& out) {
  const OutputFolder assets = out.Sub("assets");
  for (const PageFile& file : PageFiles()) {
    WriteFile(file.name == std::string(kIndexPage) ? out : assets, file.name, file.bytes);
  }
}

// The messages of every conversation; null for other kinds.
Json MessageCount(const Json& data) {
  if (!data.contains("threads")) return Json();
  size_t count = 0;
  for (const Json& thread : data["threads"]) count += thread["count"].get<size_t>();
  return count;
}

}  // namespace

ReportWriter::ReportWriter(const Library& library, BackupDevice& device, const std::string& copies,
                           const std::string& out)
    : library_(library),
      device_(device),
      out_(EmptyFolder(out)),
      data_(out_.Sub("data")),
      media_(Text(device.backupPath), copies, out_, progress_) {
  WritePage(out_);
}

KindExport ReportWriter::Add(const Kind& kind) {
  const Plist answer = library_.Content(device_, kind.contentType);
  KindExport result{&kind};
  result.records = RecordCount(answer.get());
  Json data = Json::object();
  Json records = answer ? ToJson(answer.get()) : Json::array();
  if (kind.name == "messages" || kind.name == "whatsapp") {
    data["threads"] = Threads(kind, std::move(records));
  } else {
    data["records"] = std::move(records);
  }
  if (kind.IsMedia()) {
    Json copies = Json::array();
    for (const std::string& name : media_.Copy(kind, answer.get(), result)) {
      copies.push_back(name.empty() ? Json() : Json(name));
    }
    data["files"] = std::move(copies);
  }
  WriteData(kind.name, data);
  kinds_.push_back({{"name", kind.name},
                    {"records", result.records},
                    {"files", result.files},
                    {"skipped", result.skipped},
                    {"messages", MessageCount(data)}});
  return result;
}

// One data file per conversation, loaded when it is opened; the list holds
// each conversation's own keys, its message count and its last message.
Json ReportWriter::Threads(const Kind& kind, Json chats) {
  // Messages' conversations keep their first names, thread-N.
  const std::string prefix = kind.name == "messages" ? "thread-" : kind.name + "-thread-";
  Json threads = Json::array();
  size_t messages = 0;
  for (size_t i = 0; i < chats.size(); ++i) {
    Json& chat = chats[i];
    if (!chat.is_object()) continue;
    Json summary = chat;
    const Json list = chat.contains("message") && chat["message"].is_array() ? chat["message"] : Json::array();
    summary.erase("message");
    summary["count"] = list.size();
    summary["last"] = list.empty() ? Json() : list.back();
    summary["data"] = prefix + std::to_string(i + 1);
    messages += list.size();
    WriteData(summary["data"], chat);
    threads.push_back(std::move(summary));
    progress_.Show("writing conversations", i + 1, chats.size(), std::to_string(messages) + " messages");
  }
  progress_.Finish();
  return threads;
}

void ReportWriter::Finish() {
  Json device = DeviceJson(device_);
  device.erase("path");
  WriteData("overview", {{"device", device}, {"kinds", kinds_}});
}

void ReportWriter::WriteData(const std::string& name, const Json& data) {
  WriteFile(data_, name + ".js", DataScript(name, data));
}

}  // namespace yh
