#include "kinds/current/Recording.h"

#include <set>

#include "common/ColumnHelpers.h"
#include "common/DurationText.h"
#include "common/LocalDate.h"
#include "common/PlistHelpers.h"
#include "common/SchemaInfo.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

// The voice memos app group's domain, where iOS 14 on keeps memos.
const char* const kVoiceMemosGroup = "AppDomainGroup-group.com.apple.VoiceMemos.shared";

// The device's home folder as memo databases write it.
const char* const kHomePrefixes[] = {"~/", "/var/mobile/", "/private/var/mobile/"};

std::string FolderOf(const std::string& path) {
  const std::string::size_type slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string NameOf(const std::string& path) {
  const std::string::size_type slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Where the memo's file may lie in the database's domain, most exact first.
// ZPATH is a device path up to iOS 11 and a file name beside the database
// later; a device path outside the home folder (an app group's container)
// is known to the backup only by its name beside the database.
std::vector<std::string> Candidates(const std::string& stored, const std::string& databasePath) {
  const std::string beside = FolderOf(databasePath) + NameOf(stored);
  if (stored.empty() || stored.back() == '/') return {};
  if (stored[0] != '/' && stored[0] != '~') return {FolderOf(databasePath) + stored};
  for (const char* prefix : kHomePrefixes) {
    const std::string text(prefix);
    if (stored.compare(0, text.size(), text) == 0) return {stored.substr(text.size()), beside};
  }
  return {beside};
}

std::vector<Memo> ReadMemos(Database& database) {
  const SchemaInfo schema(database);
  // CloudRecordings.db names its table ZCLOUDRECORDING, Recordings.db ZRECORDING.
  const std::string table = schema.HasTable("ZCLOUDRECORDING") ? "ZCLOUDRECORDING" : "ZRECORDING";
  std::vector<Memo> memos;
  if (!schema.HasTable(table)) return memos;
  const std::string query =
      "select " +
      schema.SelectList(table, {"ZDATE", "ZDURATION", "ZCUSTOMLABEL", "ZENCRYPTEDTITLE", "ZPATH", "ZEVICTIONDATE"}) +
      " from " + table + " order by rowid";
  Database::Statement rows(database, query.c_str());
  const int when = rows.Column("ZDATE");
  const int duration = rows.Column("ZDURATION");
  const int label = rows.Column("ZCUSTOMLABEL");
  const int title = rows.Column("ZENCRYPTEDTITLE");
  const int path = rows.Column("ZPATH");
  const int evicted = rows.Column("ZEVICTIONDATE");
  while (rows.Step()) {
    Memo memo;
    memo.date = LocalDateText(rows.Text(when), TimeBase::Since2001);
    memo.duration = DurationText(rows.Text(duration));
    memo.title = GetEmptyStringIsNull(rows.Text(label));
    if (memo.title.empty()) memo.title = GetEmptyStringIsNull(rows.Text(title));
    memo.devicePath = GetEmptyStringIsNull(rows.Text(path));
    memo.name = NameOf(memo.devicePath);
    memo.deleted = !rows.IsNull(evicted);
    memos.push_back(std::move(memo));
  }
  return memos;
}

std::vector<StoredFile> MemoDatabases(const BackupDevice* device) {
  std::vector<StoredFile> databases = StoredFilesAt(device, "Media/Recordings/Recordings.db");
  for (StoredFile& file : StoredFilesAt(device, "Media/Recordings/CloudRecordings.db")) databases.push_back(file);
  if (auto group = StoredFileIn(device, kVoiceMemosGroup, "Recordings/CloudRecordings.db")) databases.push_back(*group);
  return databases;
}

}  // namespace

// A device that moved its memos to CloudRecordings.db may keep the old
// database too: a file is listed once.
std::vector<Memo> Recording::Read(const BackupDevice* device) {
  std::set<std::string> listedFiles;
  return ReadOwnDatabases(device, MemoDatabases(device), [&](Database& database, const StoredFile& file) {
    std::vector<Memo> memos;
    for (Memo& memo : ReadMemos(database)) {
      for (const std::string& candidate : Candidates(memo.devicePath, file.relativePath)) {
        const std::optional<StoredFile> stored = StoredFileIn(device, file.domain, candidate);
        if (!stored || !stored->regular) continue;
        memo.path = stored->path;
        memo.size = stored->size;
        memo.present = true;
        break;
      }
      if (memo.present && !listedFiles.insert(memo.path).second) continue;
      memos.push_back(std::move(memo));
    }
    return memos;
  });
}

void Recording::InsertKeys(const Memo& memo, plist_t dict) const {
  InsertVoiceMemoKeys(memo, dict);
  plist_dict_set_item(dict, "present", plist_new_bool(memo.present));
  plist_dict_set_item(dict, "deleted", plist_new_bool(memo.deleted));
}

}  // namespace current
