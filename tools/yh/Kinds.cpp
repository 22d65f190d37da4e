#include "Kinds.h"

#include <algorithm>

namespace yh {
namespace {

std::vector<std::string> MediaColumns() { return {"file_name", "path", "size", "type", "query_path"}; }

std::vector<std::string> MessageColumns() {
  return {"id", "phone", "another", "message.country", "message.service", "message.text", "message.date",
          "message.type"};
}

std::vector<std::string> CallColumns() {
  return {"name", "address", "date", "type", "duration", "country_code", "network_code", "location"};
}

std::vector<std::string> CalendarColumns() {
  return {"title", "type", "location", "description", "url", "start_date", "end_date", "area", "all_day", "status"};
}

}  // namespace

const char kAllKinds[] = "all";

const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kinds = {
      {0, "calls", "", CallColumns(), {}},
      {1,
       "contacts",
       "",
       {"id", "name", "organization", "department", "note", "birthday", "jobTitle", "nickName", "creationDate",
        "properties.label", "properties.value"},
       {},
       {},
       "picture_path"},
      {2, "messages", "", MessageColumns(), {"participants"}},
      {3, "attachments", "file_name", MediaColumns(), {}},
      {4, "notes", "", {"create_date", "modify_date", "title", "body"}, {}},
      {5, "safari", "", {"url", "type", "title", "lastVisitedDate", "visitCount"}, {}},
      {6, "events", "", CalendarColumns(), {"organizer", "invitees"}},
      {7, "reminders", "", CalendarColumns(), {}},
      {8, "recordings", "name", {"date", "title", "duration", "name", "path", "size"}, {}},
      {9, "camera-photos", "file_name", MediaColumns(), {}},
      {10, "other-photos", "file_name", MediaColumns(), {}},
      {11,
       "voicemail",
       "file_name",
       {"name", "address", "date", "duration", "heard", "deleted", "path", "size", "present", "file_name"},
       {}},
      {12, "whatsapp", "file_name", MessageColumns(), {}, {"message", "attachments"}},
      {13, "whatsapp-calls", "", CallColumns(), {}},
  };
  return kinds;
}

const Kind* FindKind(const std::string& text) {
  for (const Kind& kind : Kinds()) {
    if (text == kind.name || text == std::to_string(kind.contentType)) return &kind;
  }
  return nullptr;
}

bool IsKindOrAll(const std::string& text) { return text == kAllKinds || FindKind(text) != nullptr; }

std::vector<const Kind*> SelectKinds(const std::vector<std::string>& items) {
  std::vector<const Kind*> selected;
  auto add = [&selected](const Kind* kind) {
    if (std::find(selected.begin(), selected.end(), kind) == selected.end()) selected.push_back(kind);
  };
  for (const std::string& item : items) {
    if (item == kAllKinds) {
      for (const Kind& kind : Kinds()) add(&kind);
    } else {
      add(FindKind(item));
    }
  }
  return selected;
}

std::string KindNames() {
  std::string names;
  for (const Kind& kind : Kinds()) names += (names.empty() ? "" : ", ") + kind.name;
  return names;
}

}  // namespace yh
