#include "ReportWriter.h"

#include <utility>

#include "DataScript.h"
#include "DeletedRecords.h"
#include "DeviceJson.h"
#include "Exporter.h"
#include "FileIo.h"
#include "PageFiles.h"
#include "Render.h"

namespace yh {
namespace {

const char kIndexPage[] = "index.html";

const Json& MessagesOf(const Json& chat) {
  static const Json none = Json::array();
  return chat.is_object() && chat.contains("message") && chat["message"].is_array() ? chat["message"] : none;
}

size_t MessageCount(const Json& chats) {
  size_t count = 0;
  for (const Json& chat : chats) count += MessagesOf(chat).size();
  return count;
}

bool HasThreads(const Kind& kind) { return kind.name == "messages" || kind.name == "whatsapp"; }

Json TextOf(const Json& message, const char* key) {
  return message.is_object() && message.contains(key) && message[key].is_string() ? message[key] : Json("");
}

// The data files of a kind of conversations are named with this before
// "thread-N" and "message-texts": nothing for Messages', the kind's name and
// "-" for WhatsApp's.
std::string ThreadFilePrefix(const Kind& kind) { return kind.name == "messages" ? "" : kind.name + "-"; }

// [text, date] of every message, one list per conversation.
Json MessageTexts(const Json& chats) {
  Json texts = Json::array();
  for (const Json& chat : chats) {
    Json list = Json::array();
    for (const Json& message : MessagesOf(chat)) list.push_back({TextOf(message, "text"), TextOf(message, "date")});
    texts.push_back(std::move(list));
  }
  return texts;
}

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
  const Plist answer = AnswerWithCopies(library_, device_, kind, media_, result);
  Json records = answer ? ToJson(answer.get()) : Json::array();
  const Json messages = HasThreads(kind) ? Json(MessageCount(records)) : Json();
  Json recovered;
  if (deleted_) {
    const Plist lost = AnswerWithCopies(library_, device_, kind, media_, result, Records::Deleted);
    Json deleted = lost ? ToJson(lost.get()) : Json::array();
    recovered = HasThreads(kind) ? MixDeletedMessages(records, std::move(deleted))
                                 : AppendDeletedRecords(records, std::move(deleted));
  }
  Json data = Json::object();
  if (HasThreads(kind)) {
    data["threads"] = Threads(kind, records);
    WriteData(ThreadFilePrefix(kind) + "message-texts", MessageTexts(records));
  } else {
    data["records"] = std::move(records);
  }
  WriteData(kind.name, data);
  kinds_.push_back({{"name", kind.name},
                    {"records", result.records},
                    {"files", result.files},
                    {"skipped", result.skipped},
                    {"missing", result.missing},
                    {"messages", messages}});
  if (deleted_) kinds_.back()["deleted"] = recovered;
  return result;
}

// One data file per conversation, loaded when it is opened; the list holds
// each conversation's own keys, its message count and its last message.
Json ReportWriter::Threads(const Kind& kind, const Json& chats) {
  Json threads = Json::array();
  size_t messages = 0;
  for (size_t i = 0; i < chats.size(); ++i) {
    const Json& chat = chats[i];
    if (!chat.is_object()) continue;
    Json summary = chat;
    const Json& list = MessagesOf(chat);
    summary.erase("message");
    summary["count"] = list.size();
    if (deleted_) summary["deleted"] = DeletedMessagesOf(chat);
    summary["last"] = list.empty() ? Json() : list.back();
    summary["data"] = ThreadFilePrefix(kind) + "thread-" + std::to_string(i + 1);
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
