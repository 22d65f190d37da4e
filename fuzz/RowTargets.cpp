#include "RowTargets.h"

#include "fault/SampleBackup.h"

namespace yhfuzz {
namespace {

using yhtest::IndexKind;

// Tables of older schemas that the queries fall back to.
void AddOlderSchemas(RowTarget& target) {
  if (target.path == "Library/SMS/sms.db") {
    for (KnownTable& table : target.tables) {
      if (table.name == "message") {
        table.columns.insert(table.columns.end(), {"madrid_service", "madrid_handle", "madrid_flags"});
      }
    }
    target.tables.push_back({"madrid_chat", {"chat_identifier"}});
    target.tables.push_back({"madrid_attachment", {"filename", "mime_type"}});
  } else if (target.path == "Library/Calendar/Calendar.sqlitedb") {
    target.tables.push_back({"Event",
                             {"summary", "location", "description", "url", "start_date", "end_date", "start_tz",
                              "all_day", "status", "calendar_id"}});
  } else if (target.path == "Media/PhotoData/Photos.sqlite") {
    target.tables.push_back({"Photo", {"directory", "filename"}});
  }
}

std::vector<RowTarget> MakeTargets() {
  std::vector<RowTarget> targets;
  for (IndexKind kind : {IndexKind::Mbdb, IndexKind::ManifestDb}) {
    for (const yhtest::sample::Database& database : yhtest::sample::Databases(kind)) {
      RowTarget target{kind, database.domain, database.path, {}, database.feeds};
      for (const yhtest::sample::Table& table : database.tables) target.tables.push_back({table.name, table.columns});
      AddOlderSchemas(target);
      targets.push_back(target);
    }
  }
  std::vector<iDeviceContentType> every;
  for (int type = ContentCallHistory; type <= ContentWhatsAppCalls; ++type) {
    every.push_back(static_cast<iDeviceContentType>(type));
  }
  targets.push_back({IndexKind::ManifestDb, "", "", {{"Files", {"fileID", "domain", "relativePath", "flags"}}}, every});
  return targets;
}

std::vector<std::string> MakeWords() {
  std::vector<std::string> words = {
      "Reminders", "Birthdays", "_$!<Mobile>!$_", "_$!<", ">!$_", "+15552223333", "555-0100", "image/jpeg",
      "12289", "410227200", "NULL", "DCIM", "~/", "/var/mobile/", "..", "/", "HomeDomain", "MediaDomain"};
  for (IndexKind kind : {IndexKind::Mbdb, IndexKind::ManifestDb}) {
    for (const yhtest::sample::Database& database : yhtest::sample::Databases(kind)) {
      words.push_back(database.path);
      words.push_back(yhtest::BackupBuilder::FileId(database.domain, database.path));
    }
    for (const yhtest::sample::File& file : yhtest::sample::Files(kind)) {
      words.push_back(file.path);
      words.push_back("~/" + file.path);
      words.push_back("/var/mobile/" + file.path);
      words.push_back(yhtest::BackupBuilder::FileId(file.domain, file.path));
    }
  }
  return words;
}

}  // namespace

const std::vector<RowTarget>& RowTargets() {
  static const std::vector<RowTarget> targets = MakeTargets();
  return targets;
}

const std::vector<std::string>& RowWords() {
  static const std::vector<std::string> words = MakeWords();
  return words;
}

}  // namespace yhfuzz
